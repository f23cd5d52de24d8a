#include <gtest/gtest.h>

#include "render/PangoTextMeasurer.hpp"
#include "render/WidgetLayout.hpp"
#include "views/Builders.hpp"
#include "views/DynamicType.hpp"

namespace quillan::render {
namespace {

using namespace views;

TEST(DynamicType, EveryStyleGrowsWithTheSizeAndLargeIsTheDefault) {
  for (const auto& [style, name] : enumNames(TextStyle{})) {
    double previous = 0;
    for (const auto& [size, sizeName] : enumNames(DynamicTypeSize{})) {
      const double points = pointSize(style, size);
      EXPECT_GE(points, previous) << name << " at " << sizeName;
      EXPECT_GE(points, 11) << name << " at " << sizeName;  // never below the smallest legible size
      previous = points;
    }
    EXPECT_EQ(pointSize(style, DynamicTypeSize::large), pointSize(style)) << name;
    EXPECT_GT(pointSize(style, DynamicTypeSize::accessibility5), 1.5 * pointSize(style)) << name;
  }
}

TEST(DynamicType, TextStillFitsOrEndsInAnEllipsisAtEverySize) {
  const Node tree = vstack(HorizontalAlignment::leading,
                           {text("Finished the book at last").font(Font::body()).lineLimit(2),
                            text("Today").font(Font::title())});
  for (DynamicTypeSize size : {DynamicTypeSize::xSmall, DynamicTypeSize::large, DynamicTypeSize::accessibility5}) {
    const auto widget = layoutWidget(tree, {.env = {.platformVersion = {}, .dynamicTypeSize = size}},
                                     PangoTextMeasurer::shared());
    const LayoutBox& note = widget->content.children.at(0);
    ASSERT_TRUE(note.text);
    EXPECT_LE(note.text->lines.size(), 2u);
    EXPECT_LE(note.frame.maxX(), widget->size.width - 16 + 1e-9) << static_cast<int>(size);
    EXPECT_EQ(note.text->truncated, plainText(note.text->lines.back().runs).ends_with("\u2026"));
    // Two lines hold the note at the small sizes; at the largest a word no
    // longer fits a line and the note is cut.
    EXPECT_EQ(note.text->truncated, size == DynamicTypeSize::accessibility5) << static_cast<int>(size);
  }
}

}  // namespace
}  // namespace quillan::render
