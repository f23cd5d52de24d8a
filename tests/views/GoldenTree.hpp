#pragma once

// Whole view trees compared with the JSON files under tests/data/golden, as
// parsed JSON. QUILLAN_UPDATE_GOLDEN=1 rewrites the files instead (review the
// diff!).

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "views/Node.hpp"
#include "views/ViewTreeJsonValue.hpp"

namespace quillan::views::testing {

inline void expectGoldenTree(const Node& tree, const std::string& name) {
  const auto actual = toJson(tree);
  const std::string path = std::string(QUILLAN_TEST_DATA_DIR) + "/golden/" + name;
  if (std::getenv("QUILLAN_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << actual.dump(2) << "\n";
  std::ifstream in(path);
  std::stringstream content;
  content << in.rdbuf();
  const auto golden = nlohmann::ordered_json::parse(content.str(), nullptr, false);
  ASSERT_FALSE(golden.is_discarded()) << "cannot read " << path;
  EXPECT_EQ(actual, golden) << actual.dump(2);
}

}  // namespace quillan::views::testing
