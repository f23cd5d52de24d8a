#include "store/ExternalStorage.hpp"

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace quillan::store {
namespace {

constexpr std::uint8_t kInlineTag = 0x01;
constexpr std::uint8_t kExternalFileTag = 0x02;

// A folder or device where the file should be is absent data too. (Reading a
// folder through a stream buffer would throw out of the iterator.)
std::optional<std::vector<std::uint8_t>> readFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  try {
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(file), {});
  } catch (const std::ios_base::failure&) {
    return std::nullopt;
  }
}

// One name inside the external-data folder: anything else (a path, the folder
// itself, a NUL that would cut the name short) is not a UUID.
bool isPlainFileName(std::string_view name) {
  constexpr std::string_view kSeparators("/\0", 2);
  return !name.empty() && name != "." && name != ".." && name.find_first_of(kSeparators) == std::string_view::npos;
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

std::optional<std::vector<std::uint8_t>> decodeExternalStorageValue(const std::vector<std::uint8_t>& stored,
                                                                    const std::filesystem::path& storePath) {
  if (stored.empty()) return stored;
  if (stored.front() == kInlineTag) return std::vector<std::uint8_t>(stored.begin() + 1, stored.end());
  if (stored.front() != kExternalFileTag) return stored;
  const auto name = externalFileName(stored);
  if (!isPlainFileName(name)) return std::nullopt;
  return readFile(externalDataDirectory(storePath) / name);
}

}  // namespace quillan::store
