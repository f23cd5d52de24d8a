#include <gtest/gtest.h>

#include "SampleTrees.hpp"
#include "render/FakeTextMeasurer.hpp"
#include "render/PangoLineDrawing.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/WidgetLayout.hpp"

namespace quillan::render {
namespace {

RenderContext contextFor(views::WidgetFamily family, views::LayoutDirection direction) {
  return {.env = {.platformVersion = {}, .family = family, .layoutDirection = direction}};
}

// Every box of `rtl` is the mirror image of the same box of `ltr` across a
// widget `width` wide.
void expectMirrored(const LayoutBox& ltr, const LayoutBox& rtl, double width) {
  EXPECT_NEAR(rtl.frame.x, width - ltr.frame.maxX(), 1e-9) << ltr.node->name;
  EXPECT_EQ(rtl.frame.y, ltr.frame.y) << ltr.node->name;
  EXPECT_EQ(rtl.frame.width, ltr.frame.width) << ltr.node->name;
  EXPECT_EQ(rtl.frame.height, ltr.frame.height) << ltr.node->name;
  ASSERT_EQ(rtl.children.size(), ltr.children.size());
  for (std::size_t i = 0; i < ltr.children.size(); ++i) expectMirrored(ltr.children[i], rtl.children[i], width);
}

TEST(RightToLeft, MirrorsEveryFrameAcrossTheWidget) {
  const FakeTextMeasurer measurer(10, 20);
  for (const auto& tree : {testing::streakMedium(), testing::memoriesAndCompose()}) {
    const auto ltr = layoutWidget(tree,
                                  contextFor(views::WidgetFamily::systemMedium, views::LayoutDirection::leftToRight),
                                  measurer);
    const auto rtl = layoutWidget(tree,
                                  contextFor(views::WidgetFamily::systemMedium, views::LayoutDirection::rightToLeft),
                                  measurer);
    EXPECT_FALSE(ltr->rightToLeft);
    EXPECT_TRUE(rtl->rightToLeft);
    expectMirrored(ltr->content, rtl->content, ltr->size.width);
    ASSERT_TRUE(ltr->background && rtl->background);
    expectMirrored(*ltr->background, *rtl->background, ltr->size.width);
  }
}

TEST(RightToLeft, LinesStartAtTheLeadingEdgeWhateverTheirScript) {
  // A Hebrew note in a left-to-right layout starts at the left; an English
  // one in a right-to-left layout ends at the right.
  const auto& text = PangoTextMeasurer::shared();
  const StyledText hebrew{
      {"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD", FontDescription{}, false, std::nullopt}};
  const StyledText english{{"Hello there, world", FontDescription{}, false, std::nullopt}};
  for (const auto& runs : {hebrew, english}) {
    const TextLayout layout = text.layout(runs, {60.0, std::nullopt, std::nullopt});
    ASSERT_GE(layout.lines.size(), 2u) << plainText(runs);
    const double frameWidth = layout.size.width;
    for (std::size_t i = 0; i < layout.lines.size(); ++i) {
      EXPECT_EQ(lineOffset(layout, i, frameWidth, LineAlignment::left), 0);
      EXPECT_DOUBLE_EQ(lineOffset(layout, i, frameWidth, LineAlignment::right) + layout.lines[i].width, frameWidth);
    }
    // The lines differ in width, so right-aligned ones do not all start at 0.
    EXPECT_NE(layout.lines.front().width, layout.lines.back().width) << plainText(runs);
  }
}

}  // namespace
}  // namespace quillan::render
