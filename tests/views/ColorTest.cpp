#include <gtest/gtest.h>

#include <cstdio>

#include "support/GoldenFile.hpp"
#include "views/Color.hpp"
#include "views/Font.hpp"

namespace quillan::views {
namespace {

std::string hex(const RGBA& rgba) {
  char text[32];
  std::snprintf(text, sizeof text, "%02X%02X%02X/%.2f", static_cast<int>(rgba.red * 255 + 0.5),
                static_cast<int>(rgba.green * 255 + 0.5), static_cast<int>(rgba.blue * 255 + 0.5), rgba.alpha);
  return text;
}

// Every colour in both schemes and every text style and weight, as drawing
// resolves them: a changed table entry shows up in the golden file's diff.
TEST(StyleTables, ResolveAsTheGoldenTableSays) {
  std::string table;
  for (const auto& row : enumNames(ColorName{})) {
    EXPECT_EQ(fromString<ColorName>(toString(row.value)), row.value) << row.name;
    table += std::string(row.name) + " " + hex(resolve(Color::named(row.value), ColorScheme::light)) + " " +
             hex(resolve(Color::named(row.value), ColorScheme::dark)) + "\n";
  }
  for (const auto& row : enumNames(TextStyle{})) {
    const auto font = Font::style(row.value);
    table += std::string(row.name) + " " + std::to_string(font.resolvedSize()) + " " +
             std::string(toString(font.resolvedWeight())) + "\n";
  }
  for (const auto& row : enumNames(Weight{}))
    table += std::string(row.name) + " " + std::to_string(numericWeight(row.value)) + "\n";
  quillan::testing::expectGoldenText(table, "style_tables.txt");
  EXPECT_EQ(fromString<ColorName>("grey"), std::nullopt);
}

TEST(Color, OpacityMultipliesTheTableAlphaAndToolkitNamesStayDistinct) {
  EXPECT_DOUBLE_EQ(resolve(Color::secondary().withOpacity(0.5), ColorScheme::light).alpha, 0.30);
  EXPECT_DOUBLE_EQ(Color::gray().withOpacity(0.5).withOpacity(0.5).opacity, 0.25);
  EXPECT_NE(Color::gray(), Color::systemGray());
  EXPECT_EQ(Font::title3().weight(Weight::semibold).resolvedWeight(), Weight::semibold);
  EXPECT_EQ(Font::system(19).resolvedWeight(), Weight::regular);
}

}  // namespace
}  // namespace quillan::views
