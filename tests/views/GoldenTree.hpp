#pragma once

// Whole view trees compared with the JSON files under tests/data/golden.

#include "support/GoldenFile.hpp"
#include "views/Node.hpp"
#include "views/ViewTreeJsonValue.hpp"

namespace quillan::views::testing {

inline void expectGoldenTree(const Node& tree, const std::string& name) {
  quillan::testing::expectGoldenJson(nlohmann::json::parse(toJson(tree).dump()), name);
}

}  // namespace quillan::views::testing
