#include <gtest/gtest.h>

#include <algorithm>

#include <nlohmann/json.hpp>

#include "SampleTrees.hpp"
#include "render/ClearedRaster.hpp"
#include "render/FakeTextMeasurer.hpp"
#include "render/HitTest.hpp"
#include "render/LayoutJson.hpp"
#include "render/Renderer.hpp"
#include "render/ShapePath.hpp"
#include "render/WidgetLayout.hpp"
#include "render/WidgetPainter.hpp"
#include "support/GoldenFile.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

using views::WidgetFamily;

RenderContext contextFor(WidgetFamily family, int platform = 17) {
  return {.env = {.platformVersion = {platform, 0}, .family = family}};
}

TEST(DeviceProfile, NoWidgetIsLargerThanTheTextBoundAssumes) {
  for (const auto& name : DeviceProfile::profileNames()) {
    const auto profile = DeviceProfile::named(name);
    for (const Size size : {profile->small, profile->medium, profile->large, profile->circular, profile->rectangular,
                            profile->inlineFamily}) {
      EXPECT_LE(size.width, kLargestWidgetWidth) << name;
      EXPECT_LE(size.height, kLargestWidgetHeight) << name;
    }
  }
  EXPECT_FALSE(DeviceProfile::named("393x853"));
}

TEST(WidgetLayout, MarginsAndBackgroundsDependOnPlatformAndFamily) {
  using namespace views;
  const FakeTextMeasurer measurer;
  const Node tree = color(Color::red())
                        .containerBackground(ContainerBackgroundPlacement::widget, views::Alignment::center,
                                             color(Color::white()));
  const struct {
    WidgetFamily family;
    int platform;
    Rect content;
    bool background;
  } cases[] = {
      {WidgetFamily::systemMedium, 17, {16, 16, 306, 126}, true},
      {WidgetFamily::systemMedium, 16, {0, 0, 338, 158}, true},  // systemBackground stands in
      {WidgetFamily::accessoryCircular, 17, {0, 0, 72, 72}, true},
      {WidgetFamily::accessoryCircular, 16, {0, 0, 72, 72}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(static_cast<int>(c.family)) + "@" + std::to_string(c.platform));
    const auto widget = layoutWidget(tree, contextFor(c.family, c.platform), measurer);
    EXPECT_EQ(widget->content.frame, c.content);
    EXPECT_EQ(widget->background.has_value(), c.background);
    if (widget->background) {
      EXPECT_EQ(widget->background->frame, (Rect{0, 0, widget->size.width, widget->size.height}));
    }
  }
}

TEST(HitTest, LinksAreTargetsOnlyInMediumWidgets) {
  using namespace views;
  const Node tree = hstack({link("app://left", color(Color::red())), link("app://right", color(Color::blue()))})
                        .widgetURL("app://whole");
  RenderContext medium = contextFor(WidgetFamily::systemMedium);
  // Content 306 wide at x 16: each link (306 - 8) / 2 = 149 wide.
  EXPECT_EQ(hitTest(tree, medium, {20, 50}), "app://left");
  EXPECT_EQ(hitTest(tree, medium, {170, 50}), "app://whole");  // in the gap between the links
  EXPECT_EQ(hitTest(tree, medium, {200, 50}), "app://right");
  EXPECT_EQ(hitTest(tree, medium, {5, 5}), "app://whole");   // in the margin
  EXPECT_EQ(hitTest(tree, medium, {400, 5}), std::nullopt);  // outside the widget

  RenderContext small = contextFor(WidgetFamily::systemSmall);
  EXPECT_EQ(hitTest(tree, small, {20, 50}), "app://whole");
  const auto regions = hitRegions(tree, small);
  ASSERT_EQ(regions.size(), 1u);
  EXPECT_EQ(regions[0].rect, (Rect{0, 0, 158, 158}));
}

TEST(HitTest, InnermostLinkWinsAndRegionsAgreeWithHitTest) {
  using namespace views;
  const Node tree = link("app://outer", vstack({link("app://inner", color(Color::red()).frame(40, 40)), spacer()}));
  const RenderContext medium = contextFor(WidgetFamily::systemMedium);
  const auto regions = hitRegions(tree, medium);
  ASSERT_EQ(regions.size(), 2u);
  EXPECT_EQ(regions[0].url, "app://inner");
  EXPECT_EQ(regions[1].url, "app://outer");
  for (double x = 0; x < 338; x += 13)
    for (double y = 0; y < 158; y += 11) {
      const auto first = std::ranges::find_if(regions, [&](const auto& region) {
        return region.rect.contains({x, y});
      });
      EXPECT_EQ(hitTest(tree, medium, {x, y}), first == regions.end() ? std::nullopt : std::optional(first->url))
          << x << "," << y;
    }
  // A small widget is one target: its Links open nothing, and it has no widgetURL.
  EXPECT_EQ(hitTest(tree, contextFor(WidgetFamily::systemSmall), {20, 20}), std::nullopt);
}

TEST(WidgetLayout, GeometryFollowsThePhonesPixelsNotTheOutputScale) {
  using namespace views;
  const Node tree = vstack({text("Snapped to thirds of a point").padding(EdgeSet::top(), 0.2), spacer(1.1)});
  auto context = contextFor(WidgetFamily::systemSmall);
  const FakeTextMeasurer measurer(7.3, 17.9);
  context.scale = 3;
  const auto atThree = layoutJSON(tree, context, measurer);
  context.scale = 1;
  EXPECT_EQ(layoutJSON(tree, context, measurer), atThree);
}

// Pictures are drawn onto pixels cleared beside the layout: they must be an
// image surface of exactly the size asked, every pixel transparent.
TEST(ClearedRaster, PixelsAreATransparentSurfaceOfTheSizeAsked) {
  const struct {
    int width;
    int height;
  } sizes[] = {{1, 1}, {7, 3}, {1092, 510}, {0, 0}};
  for (const auto& [width, height] : sizes) {
    ClearedRaster raster(width, height);
    const CairoSurface surface = raster.surface();
    ASSERT_EQ(cairo_surface_status(surface.get()), CAIRO_STATUS_SUCCESS) << width << "x" << height;
    EXPECT_EQ(cairo_image_surface_get_format(surface.get()), CAIRO_FORMAT_ARGB32);
    EXPECT_EQ(cairo_image_surface_get_width(surface.get()), width);
    EXPECT_EQ(cairo_image_surface_get_height(surface.get()), height);
    const auto* data = cairo_image_surface_get_data(surface.get());
    const auto bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get())) * height;
    EXPECT_TRUE(bytes == 0 || std::all_of(data, data + bytes, [](unsigned char byte) { return byte == 0; }))
        << width << "x" << height;
  }
}

TEST(WidgetLayout, AFamilyTheDeviceLacksIsAnError) {
  auto context = contextFor(WidgetFamily::accessoryCircular);
  context.device = *DeviceProfile::named("320x568");
  const FakeTextMeasurer measurer(10, 20);
  EXPECT_THROW(layoutWidget(views::color(views::Color::red()), context, measurer), RenderError);
}

TEST(ShapeGeometry, StrokeBorderAndContainerRelativeRadii) {
  EXPECT_DOUBLE_EQ(strokeBorderRadius({0, 0, 47.5, 47.5}, 3), 22.25);
  EXPECT_DOUBLE_EQ(strokeBorderRadius({0, 0, 80, 62.5}, 3.5), 29.5);
  EXPECT_DOUBLE_EQ(containerRelativeRadius({16, 16, 100, 100}, {158, 158}, 22), 6);
  EXPECT_DOUBLE_EQ(containerRelativeRadius({0, 0, 158, 158}, {158, 158}, 22), 22);
  EXPECT_DOUBLE_EQ(containerRelativeRadius({30, 30, 50, 50}, {158, 158}, 22), 0);
}

TEST(RenderingModes, VibrantKeepsLuminanceAsAlphaAccentedKeepsAlpha) {
  using M = views::WidgetRenderingMode;
  const Rgba orange = Rgba::fromHex(0xFF9500, 0.5);
  EXPECT_EQ(colorForMode(orange, M::fullColor), orange);
  const Rgba white = colorForMode(Rgba::fromHex(0xFFFFFF), M::vibrant);
  EXPECT_DOUBLE_EQ(white.alpha, 1.0);
  EXPECT_DOUBLE_EQ(colorForMode(Rgba::fromHex(0x000000), M::vibrant).alpha, 0.0);
  const Rgba toned = colorForMode(orange, M::vibrant);
  EXPECT_EQ((Rgba{1, 1, 1, toned.alpha}), toned);
  EXPECT_GT(toned.alpha, 0.1);
  EXPECT_LT(toned.alpha, 0.5);
  EXPECT_DOUBLE_EQ(colorForMode(orange, M::accented).alpha, 0.5);
  EXPECT_NE(colorForMode(orange, M::accented, true), colorForMode(orange, M::accented, false));
}

// The streak widget laid out with fixed metrics, compared with
// tests/data/golden/streak_medium_layout.json: the title row, the five circles
// snapped to thirds of a point and sharing one bottom line, today's larger and
// linked to the compose screen. QUILLAN_UPDATE_GOLDEN=1 rewrites the file
// instead (review the diff!).
TEST(LayoutJson, TheStreakWidgetsLayoutIsTheGoldenOne) {
  const FakeTextMeasurer measurer(10, 20);
  const auto actual = nlohmann::json::parse(layoutJSON(testing::streakMedium(), contextFor(WidgetFamily::systemMedium),
                                                       measurer));
  quillan::testing::expectGoldenJson(actual, "streak_medium_layout.json");
}

TEST(WidgetLayout, AMegabyteNoteDrawsTheSameTwoLinesAsItsStart) {
  std::string note;
  while (note.size() < (1u << 20)) note += "Walked by the river with the **dog**, then tea at the old mill. ";
  const auto memory = [](std::string_view markdown) {
    return views::text(platform::AttributedString::fromInlineMarkdown(markdown))
        .font(views::Font::system(15))
        .lineLimit(2);
  };
  const std::string start = note.substr(0, 400);  // more than two lines hold
  const RenderContext context = contextFor(WidgetFamily::systemMedium);
  const auto hugeLayout = layoutJSON(memory(note), context);
  EXPECT_EQ(hugeLayout, layoutJSON(memory(start), context));
  EXPECT_NE(hugeLayout.find("\u2026"), std::string::npos);
  EXPECT_EQ(renderToPNGBytes(memory(note), context), renderToPNGBytes(memory(start), context));
}

}  // namespace
}  // namespace quillan::render
