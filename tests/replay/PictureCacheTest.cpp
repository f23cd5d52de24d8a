#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "replay/PictureCache.hpp"

namespace quillan::replay {
namespace {

using render::RenderContext;

const std::string kTree = R"({"type": "Text", "text": "Hello"})";

RenderContext homeScreen() {
  return render::makeRenderContext({}, views::WidgetFamily::systemSmall, render::DeviceProfile::defaultProfile(), 2);
}

// Each setting the pictures' bytes depend on, changed alone, must give another key.
TEST(PictureCache, EveryDrawingSettingAndTheTreeTellKeysApart) {
  const auto base = PictureCache::keyOf(kTree, homeScreen());
  ASSERT_EQ(PictureCache::keyOf(kTree, homeScreen()), base);
  const std::vector<std::pair<std::string, std::function<void(RenderContext&)>>> changes = {
      {"scheme", [](RenderContext& c) { c.env.colorScheme = views::ColorScheme::dark; }},
      {"mode", [](RenderContext& c) { c.env.renderingMode = views::WidgetRenderingMode::vibrant; }},
      {"platform",
       [](RenderContext& c) {
         c.env.platformVersion = {16, 4};
       }},
      {"platform minor", [](RenderContext& c) { c.env.platformVersion.minor = 1; }},
      {"family", [](RenderContext& c) { c.env.family = views::WidgetFamily::systemMedium; }},
      {"direction", [](RenderContext& c) { c.env.layoutDirection = views::LayoutDirection::rightToLeft; }},
      {"text size", [](RenderContext& c) { c.env.dynamicTypeSize = views::DynamicTypeSize::xLarge; }},
      {"redacted", [](RenderContext& c) { c.redacted = true; }},
      {"scale", [](RenderContext& c) { c.scale = 2.0000001; }},
      {"device", [](RenderContext& c) { c.device = *render::DeviceProfile::named("430x932"); }},
      {"widget size", [](RenderContext& c) { c.device.small.width += 1; }},
      {"device scale", [](RenderContext& c) { c.device.scale = 2; }},
  };
  for (const auto& [name, change] : changes) {
    auto context = homeScreen();
    change(context);
    EXPECT_NE(PictureCache::keyOf(kTree, context), base) << name;
  }
  EXPECT_NE(PictureCache::keyOf(R"({"type": "Text", "text": "Hello!"})", homeScreen()), base);
}

CachedPicture pictureOf(std::size_t bytes, std::uint8_t fill) { return {std::vector<std::uint8_t>(bytes, fill), {}}; }

// Keys "a", "b", "c" cost 2 bytes each beside their pictures; the cache holds 25 bytes.
TEST(PictureCache, KeepsWithinItsBytesDroppingTheLeastRecentlyAskedFirst) {
  struct Case {
    std::string name;
    std::vector<std::string> steps;  // "+k" keeps a 10-byte picture under k, "*k" a 30-byte one, "?k" asks for k
    std::vector<std::string> kept;
  };
  const std::vector<Case> cases = {
      {"fits", {"+a", "+b"}, {"a", "b"}},
      {"oldest goes", {"+a", "+b", "+c"}, {"b", "c"}},
      {"asked is kept", {"+a", "+b", "?a", "+c"}, {"a", "c"}},
      {"kept again is recent", {"+a", "+b", "+a", "+c"}, {"a", "c"}},
      {"larger than all is not kept and drops nothing", {"+a", "*b"}, {"a"}},
  };
  for (const auto& test : cases) {
    PictureCache cache(25);
    for (const auto& step : test.steps) {
      const auto fill = static_cast<std::uint8_t>(step[1]);
      if (step[0] == '+') cache.insert(step.substr(1), pictureOf(10, fill));
      if (step[0] == '*') cache.insert(step.substr(1), pictureOf(30, fill));
      if (step[0] == '?') cache.find(step.substr(1));
    }
    std::vector<std::string> kept;
    for (const auto* key : {"a", "b", "c"}) {
      const auto* picture = cache.find(key);
      if (!picture) continue;
      kept.push_back(key);
      EXPECT_EQ(picture->png, pictureOf(10, static_cast<std::uint8_t>(key[0])).png) << test.name << " " << key;
    }
    EXPECT_EQ(kept, test.kept) << test.name;
    EXPECT_EQ(cache.size(), test.kept.size()) << test.name;
  }
}

}  // namespace
}  // namespace quillan::replay
