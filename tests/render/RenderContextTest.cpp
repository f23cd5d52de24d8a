#include <gtest/gtest.h>

#include "render/RenderContext.hpp"

namespace quillan::render {
namespace {

views::Environment darkVibrantIn(views::WidgetFamily family) {
  views::Environment environment;
  environment.colorScheme = views::ColorScheme::dark;
  environment.renderingMode = views::WidgetRenderingMode::vibrant;
  environment.layoutDirection = views::LayoutDirection::rightToLeft;
  environment.family = family;
  return environment;
}

// Every command draws through this context: the family it is given wins over
// the environment's, and the rest of the environment is drawn as it came.
TEST(RenderContext, TakesTheFamilyItIsGivenAndKeepsTheRestOfTheEnvironment) {
  using enum views::WidgetFamily;
  for (const auto& [environmentFamily, drawnFamily] :
       {std::pair{systemSmall, accessoryCircular}, std::pair{accessoryCircular, systemMedium},
        std::pair{systemMedium, systemMedium}}) {
    const auto context = makeRenderContext(darkVibrantIn(environmentFamily), drawnFamily);
    EXPECT_EQ(context.env, darkVibrantIn(drawnFamily));
  }
}

// A context made without a device or a scale draws as the phone does, and no
// caller's picture is redacted unless it asks.
TEST(RenderContext, DefaultsToThePhoneAtItsOwnDensityUnredacted) {
  const auto context = makeRenderContext({}, views::WidgetFamily::systemSmall);
  EXPECT_EQ(context.device.name, "393x852");
  EXPECT_EQ(context.scale, 3);
  EXPECT_FALSE(context.redacted);
  const auto other = makeRenderContext({}, views::WidgetFamily::systemSmall, *DeviceProfile::named("430x932"), 2);
  EXPECT_EQ(other.device.name, "430x932");
  EXPECT_EQ(other.scale, 2);
}

}  // namespace
}  // namespace quillan::render
