#include "store/ExternalStorage.hpp"

#include <fstream>
#include <iterator>
#include <string>

namespace quillan::store {
namespace {

constexpr std::uint8_t kInlineTag = 0x01;
constexpr std::uint8_t kExternalFileTag = 0x02;

std::optional<std::vector<std::uint8_t>> readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(file), {});
}

std::string externalFileName(const std::vector<std::uint8_t>& stored) {
  std::string name(stored.begin() + 1, stored.end());
  while (!name.empty() && name.back() == '\0') name.pop_back();
  return name;
}

}  // namespace

std::filesystem::path externalDataDirectory(const std::filesystem::path& storePath) {
  // Appended rather than "." + stem: GCC 12 at -O3 reports a false overlap in that form.
  std::string folder = ".";
  folder += storePath.stem().string();
  folder += "_SUPPORT";
  return storePath.parent_path() / folder / "_EXTERNAL_DATA";
}

std::optional<std::vector<std::uint8_t>> decodeExternalStorageValue(
    const std::vector<std::uint8_t>& stored, const std::filesystem::path& storePath) {
  if (stored.empty()) return stored;
  if (stored.front() == kInlineTag) return std::vector<std::uint8_t>(stored.begin() + 1, stored.end());
  if (stored.front() != kExternalFileTag) return stored;
  const auto name = externalFileName(stored);
  // A name that could leave the folder is not a UUID; treat it as absent data.
  if (name.empty() || name.find('/') != std::string::npos || name == "..") return std::nullopt;
  return readFile(externalDataDirectory(storePath) / name);
}

}  // namespace quillan::store
