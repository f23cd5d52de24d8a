#include <gtest/gtest.h>

#include "render/RenderContext.hpp"

namespace quillan::render {
namespace {

views::Environment darkVibrantIn(views::WidgetFamily family) {
  return {.colorScheme = views::ColorScheme::dark,
          .renderingMode = views::WidgetRenderingMode::vibrant,
          .platformVersion = {},
          .family = family,
          .layoutDirection = views::LayoutDirection::rightToLeft};
}

// Every command draws through this context: the family it is given wins over
// the environment's, the device and scale it is given are kept, the rest of
// the environment is drawn as it came, and no picture is redacted unless the
// caller asks.
TEST(RenderContext, TakesTheFamilyDeviceAndScaleItIsGivenAndKeepsTheRestOfTheEnvironment) {
  using enum views::WidgetFamily;
  struct Case {
    views::WidgetFamily environmentFamily, drawnFamily;
    const char* device;
    double scale;
  };
  for (const auto& c :
       {Case{systemSmall, accessoryCircular, "393x852", 3}, Case{accessoryCircular, systemMedium, "430x932", 2},
        Case{systemMedium, systemMedium, "375x667", 1}}) {
    const auto context = makeRenderContext(darkVibrantIn(c.environmentFamily), c.drawnFamily,
                                           *DeviceProfile::named(c.device), c.scale);
    EXPECT_EQ(context.env, darkVibrantIn(c.drawnFamily));
    EXPECT_EQ(context.device.name, c.device);
    EXPECT_EQ(context.scale, c.scale);
    EXPECT_FALSE(context.redacted);
  }
}

}  // namespace
}  // namespace quillan::render
