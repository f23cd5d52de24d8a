#include "hosting/JsonFile.hpp"

#include "hosting/BoundedFile.hpp"
#include "views/JsonNesting.hpp"

namespace quillan::hosting {

std::string readJsonFileText(const std::filesystem::path& path, std::uintmax_t limitBytes, const std::string& option) {
  std::string text;
  try {
    text = readBoundedFile(path, limitBytes);
  } catch (const BoundedFileError& error) {
    throw badOption(option, "cannot read", path.string(), error.what());
  }
  if (!views::jsonNestsWithin(text)) {
    throw badOption(option, "nested deeper than " + std::to_string(views::kMaxJsonNesting) + " levels", path.string());
  }
  return text;
}

}  // namespace quillan::hosting
