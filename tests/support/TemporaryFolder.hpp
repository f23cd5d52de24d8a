#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace quillan::testing {

// A scratch folder under the system's temporary directory, removed with
// everything in it when the object goes.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& prefix = "quillan-test") {
    auto pattern = (std::filesystem::temp_directory_path() / (prefix + "-XXXXXX")).string();
    path_ = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace quillan::testing
