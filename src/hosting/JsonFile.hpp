#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "hosting/UsageError.hpp"

namespace quillan::hosting {

// The text of a JSON file the user named with `option`, read as
// readBoundedFile reads and refused before parsing when it nests deeper than
// any input of ours may. Throws the option's one-line UsageError.
std::string readJsonFileText(const std::filesystem::path& path, std::uintmax_t limitBytes, const std::string& option);

// That file parsed (nlohmann::json or ordered_json); "not JSON" is the
// option's error too.
template <typename Json>
Json readJsonFile(const std::filesystem::path& path, std::uintmax_t limitBytes, const std::string& option) {
  auto json = Json::parse(readJsonFileText(path, limitBytes, option), nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) throw badOption(option, "not JSON", path.string());
  return json;
}

}  // namespace quillan::hosting
