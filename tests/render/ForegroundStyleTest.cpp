#include <gtest/gtest.h>

#include "render/ViewAdapter.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

using namespace views;

Rgba textColor(const Node& tree, ColorScheme scheme = ColorScheme::light) {
  Environment environment;
  environment.colorScheme = scheme;
  return adaptViewTree(tree, environment).content.foreground.color;
}

TEST(ForegroundStyle, AHierarchicalLevelLowersTheOpacityOfACustomColour) {
  // .secondary nearer the text, .orange set outside it: orange at half strength.
  const Rgba secondaryOrange =
      textColor(text("a").foregroundStyle(HierarchicalShapeStyle::secondary).foregroundColor(Color::orange()));
  EXPECT_EQ(secondaryOrange, Rgba::fromHex(0xFF9500, 0.5));
  const Rgba tertiaryOrange = textColor(
      text("a").foregroundStyle(HierarchicalShapeStyle::tertiary).foregroundStyle(Color::orange()), ColorScheme::dark);
  EXPECT_EQ(tertiaryOrange, Rgba::fromHex(0xFF9F0A, 0.25));
}

TEST(ForegroundStyle, WithoutACustomColourLevelsAreTheLabelColours) {
  EXPECT_EQ(textColor(text("a").foregroundStyle(HierarchicalShapeStyle::secondary)), Rgba::fromHex(0x3C3C43, 0.6));
  EXPECT_EQ(textColor(text("a")), Rgba::fromHex(0x000000));
  // A colour nearer the text simply wins.
  EXPECT_EQ(textColor(text("a").foregroundColor(Color::red()).foregroundColor(Color::orange())),
            Rgba::fromHex(0xFF3B30));
}

}  // namespace
}  // namespace quillan::render
