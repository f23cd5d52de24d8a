#pragma once

#include <functional>

#include "platform/URL.hpp"

namespace quillan::platform {

// NSFileCoordinator stand-in: an advisory lock (flock) held on the file for the
// length of the accessor, shared with any well-behaved writer of that file.
class FileCoordinator {
 public:
  enum class WritingOptions { none, forDeleting };

  // Runs `accessor` with the URL to use while the write lock is held. If the
  // lock cannot be taken (e.g. the file is gone) the accessor still runs, as the
  // platform's coordinator does for an item that does not exist.
  void coordinateWriting(const URL& url, WritingOptions options, const std::function<void(const URL&)>& accessor);
};

}  // namespace quillan::platform
