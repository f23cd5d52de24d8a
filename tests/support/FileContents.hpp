#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace quillan::testing {

inline std::string readText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Every entry under `folder`, by relative path, with its bytes ("(folder)" for a folder).
inline std::map<std::string, std::string> contentsOf(const std::filesystem::path& folder) {
  std::map<std::string, std::string> contents;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    contents[entry.path().lexically_relative(folder).string()] = entry.is_regular_file() ? readText(entry.path())
                                                                                         : "(folder)";
  }
  return contents;
}

}  // namespace quillan::testing
