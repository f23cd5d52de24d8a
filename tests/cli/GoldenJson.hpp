#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include <nlohmann/json.hpp>

namespace quillan::testing {

// `actual` compared with the JSON file `name` under tests/data/golden.
// QUILLAN_UPDATE_GOLDEN=1 rewrites the file instead (review the diff!).
inline void expectGoldenJson(const nlohmann::json& actual, const std::string& name) {
  const std::string path = std::string(QUILLAN_TEST_DATA_DIR) + "/golden/" + name;
  if (std::getenv("QUILLAN_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << actual.dump(2) << "\n";
  const auto golden = nlohmann::json::parse(std::ifstream(path), nullptr, false);
  ASSERT_FALSE(golden.is_discarded()) << "cannot read " << path;
  EXPECT_EQ(actual, golden) << actual.dump(2).substr(0, 4000);
}

}  // namespace quillan::testing
