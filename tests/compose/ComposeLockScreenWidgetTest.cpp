#include <gtest/gtest.h>

#include "compose/ComposeLockScreenWidget.hpp"
#include "views/GoldenTree.hpp"

namespace quillan::compose {
namespace {

using namespace views;

// The symbol fills the circular slot and takes the lock screen's two tint
// levels; from platform 17 the container's background is clear.
TEST(ComposeLockScreen, MatchesTheGoldenTreesOnEitherSideOfPlatform17) {
  for (const int major : {16, 17}) {
    Environment environment;
    environment.family = WidgetFamily::accessoryCircular;
    environment.platformVersion = {major, 0};
    const auto tree = ComposeLockScreenWidgetEntryView({platform::Date()}).body(environment);
    views::testing::expectGoldenTree(tree, "compose_lock_screen_" + std::to_string(major) + ".json");
  }
}

}  // namespace
}  // namespace quillan::compose
