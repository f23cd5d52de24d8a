#pragma once

#include <string>

#include "support/GoldenFile.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::render::testing {

// A widget's view tree as the widgets' golden files hold it (tests/data/golden):
// the trees the widgets really build, not hand-made look-alikes.
inline views::Node goldenTree(const std::string& name) {
  return views::decodeViewTree(quillan::testing::readGolden(name));
}

inline views::Node streakMedium() { return goldenTree("streak_medium_light_17.json"); }
inline views::Node memoriesAndCompose() { return goldenTree("otd_medium_light_17.json"); }

}  // namespace quillan::render::testing
