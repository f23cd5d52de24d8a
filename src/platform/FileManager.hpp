#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/Error.hpp"
#include "platform/URL.hpp"

namespace quillan::platform {

// The platform's file locations. Off the phone the app group's shared container
// and the extension's application-support folder are folders the host names
// (--group-container, --app-support), else XDG defaults:
//   group container: $XDG_DATA_HOME/quillan-widgets/group.com.tarvelo.Quillan
//   application support: "Application Support" beside the group container,
//     so $XDG_DATA_HOME/quillan-widgets/Application Support by default
// ($XDG_DATA_HOME defaults to ~/.local/share). The two folders stand for one
// phone: a journal named by its group container alone is never paired with the
// legacy journal of another (which the legacy move would delete).
class FileManager {
 public:
  // containerURL(forSecurityApplicationGroupIdentifier:): the group's container
  // as a directory URL, or empty when that folder does not exist.
  static std::optional<URL> containerURL(std::string_view groupIdentifier);
  static URL applicationSupportDirectory();

  static void setGroupContainerDirectory(std::filesystem::path directory);
  static void setApplicationSupportDirectory(std::filesystem::path directory);
  static std::filesystem::path defaultGroupContainerDirectory();
  static std::filesystem::path defaultApplicationSupportDirectory();
  // "Application Support" beside `groupContainer`.
  static std::filesystem::path applicationSupportBeside(const std::filesystem::path& groupContainer);

  static bool fileExists(const std::filesystem::path& path);
  // removeItem(at:): removes one file; the error carries a localised description
  // such as `"Quillan.sqlite" couldn't be removed.`
  static std::optional<Error> removeItem(const URL& url);
};

}  // namespace quillan::platform
