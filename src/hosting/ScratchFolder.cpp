#include "hosting/ScratchFolder.hpp"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "hosting/QuotedValue.hpp"
#include "hosting/RemovalOnSignal.hpp"

namespace quillan::hosting {

ScratchFolder::ScratchFolder(const std::string& prefix) : owner_(::getpid()) {
  path_ = RemovalOnSignal::registerCreated([&prefix] {
    auto pattern = (std::filesystem::temp_directory_path() / (prefix + "-XXXXXX")).string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a temporary folder " + quotedValue(pattern) + ": " +
                               std::strerror(errno));
    }
    return std::filesystem::path(pattern);
  });
}

ScratchFolder::~ScratchFolder() {
  if (::getpid() == owner_) RemovalOnSignal::removeNow(path_);
}

}  // namespace quillan::hosting
