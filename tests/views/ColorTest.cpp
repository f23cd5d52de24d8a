#include <gtest/gtest.h>

#include "views/Color.hpp"
#include "views/Font.hpp"
#include "views/LinearGradient.hpp"

namespace quillan::views {
namespace {

struct ColorCase {
  Color color;
  ColorScheme scheme;
  RGBA expected;
};

TEST(Color, ResolvesBySchemeFromTheSystemTable) {
  const ColorCase cases[] = {
      {Color::systemGray6(), ColorScheme::light, RGBA::fromHex(0xF2F2F7)},
      {Color::systemGray6(), ColorScheme::dark, RGBA::fromHex(0x1C1C1E)},
      {Color::systemGray2(), ColorScheme::light, RGBA::fromHex(0xAEAEB2)},
      {Color::systemGray2(), ColorScheme::dark, RGBA::fromHex(0x636366)},
      {Color::systemGray(), ColorScheme::dark, RGBA::fromHex(0x8E8E93)},
      {Color::red(), ColorScheme::light, RGBA::fromHex(0xFF3B30)},
      {Color::red(), ColorScheme::dark, RGBA::fromHex(0xFF453A)},
      {Color::primary(), ColorScheme::light, RGBA::fromHex(0x000000)},
      {Color::primary(), ColorScheme::dark, RGBA::fromHex(0xFFFFFF)},
      {Color::secondary(), ColorScheme::dark, RGBA::fromHex(0xEBEBF5, 0.60)},
      {Color::white(), ColorScheme::dark, RGBA::fromHex(0xFFFFFF)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(resolve(c.color, c.scheme), c.expected) << toString(c.color.name) << " in " << toString(c.scheme);
  }
}

TEST(Color, OpacityMultipliesTheTableAlpha) {
  EXPECT_DOUBLE_EQ(resolve(Color::orange().withOpacity(0.75), ColorScheme::light).alpha, 0.75);
  EXPECT_DOUBLE_EQ(resolve(Color::secondary().withOpacity(0.5), ColorScheme::light).alpha, 0.30);
  EXPECT_DOUBLE_EQ(Color::gray().withOpacity(0.5).withOpacity(0.5).opacity, 0.25);
  EXPECT_DOUBLE_EQ(resolve(Color::clear(), ColorScheme::dark).alpha, 0.0);
}

TEST(Color, ToolkitAndSystemNamesStayDistinctButResolveAlike) {
  EXPECT_NE(Color::gray(), Color::systemGray());
  EXPECT_EQ(resolve(Color::gray(), ColorScheme::light), resolve(Color::systemGray(), ColorScheme::light));
}

TEST(Color, EveryNameRoundTripsThroughItsTable) {
  for (const auto& row : enumNames(ColorName{})) {
    EXPECT_EQ(fromString<ColorName>(toString(row.value)), row.value) << row.name;
  }
  EXPECT_EQ(fromString<ColorName>("grey"), std::nullopt);
}

TEST(LinearGradient, EvenlySpacedPutsTheEndsAtZeroAndOne) {
  const auto gradient = LinearGradient::evenlySpaced({Color::orange(), Color::orange().withOpacity(0.75)},
                                                     UnitPoint::bottomLeading(), UnitPoint::topTrailing());
  ASSERT_EQ(gradient.stops.size(), 2u);
  EXPECT_EQ(gradient.stops[0], (GradientStop{Color::orange(), 0.0}));
  EXPECT_EQ(gradient.stops[1], (GradientStop{Color::orange().withOpacity(0.75), 1.0}));
  EXPECT_EQ(LinearGradient::evenlySpaced({Color::red(), Color::green(), Color::blue()}, UnitPoint::top(),
                                         UnitPoint::bottom())
                .stops[1]
                .location,
            0.5);
}

TEST(Font, TextStylesResolveToTheDefaultContentSize) {
  EXPECT_EQ(Font::title3().weight(Weight::semibold).resolvedSize(), 20);
  EXPECT_EQ(Font::title3().weight(Weight::semibold).resolvedWeight(), Weight::semibold);
  EXPECT_EQ(Font::headline().resolvedWeight(), Weight::semibold);
  EXPECT_EQ(Font::title().resolvedSize(), 28);
  EXPECT_EQ(Font::system(19).resolvedWeight(), Weight::regular);
  EXPECT_EQ(numericWeight(Weight::heavy), 800);
  EXPECT_EQ(numericWeight(Weight::ultraLight), 100);
}

}  // namespace
}  // namespace quillan::views
