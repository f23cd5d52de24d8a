#include <gtest/gtest.h>

#include "LayoutTestSupport.hpp"
#include "render/ViewAdapter.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

using namespace testing;

class BaselineAlignmentTest : public FakeMetricsLayout {
 protected:
  LayoutBox row(Baseline baseline, std::vector<LayoutNode> children, double width = 400) {
    LayoutNode stackNode = stack(LayoutKind::hstack, std::move(children));
    stackNode.alignment.baseline = baseline;
    return engine.layout(stackNode, ProposedSize::of({width, 200}));
  }
};

TEST_F(BaselineAlignmentTest, ChildrenShareTheChosenBaseline) {
  struct Case {
    const char* name;
    Baseline baseline;
    double firstTop, secondTop, rowHeight;
  };
  // First child: "aaaa bbbb" wrapped to two lines (proposal 40 wide); second:
  // one line padded 10 on top, so its baseline lies at 26.
  const Case cases[] = {
      {"first baselines", Baseline::first, 10, 0, 50},
      {"last baselines", Baseline::last, 0, 10, 40},
  };
  for (const auto& c : cases) {
    LayoutNode wrapped = fixedFrame(text("aaaa bbbb"), 40, std::nullopt);
    const LayoutBox box = row(c.baseline, {std::move(wrapped), padding(text("c"), {10, 0, 0, 0})});
    EXPECT_DOUBLE_EQ(box.children[0].frame.y, c.firstTop) << c.name;
    EXPECT_DOUBLE_EQ(box.children[1].frame.y, c.secondTop) << c.name;
    EXPECT_DOUBLE_EQ(box.frame.height, c.rowHeight) << c.name;
  }
}

TEST_F(BaselineAlignmentTest, AViewWithoutTextSitsOnTheBaselineWithItsBottom) {
  const LayoutBox box = row(Baseline::first, {fixedFrame(color(), 10, 10), text("a")});
  EXPECT_DOUBLE_EQ(box.children[0].frame.maxY(), box.children[1].frame.y + 16);
  // A tall shape lifts the text: its bottom is the deepest baseline.
  const LayoutBox tall = row(Baseline::first, {fixedFrame(color(), 10, 40), text("a")});
  EXPECT_DOUBLE_EQ(tall.children[1].frame.y, 40 - 16);
  EXPECT_DOUBLE_EQ(tall.frame.height, 44);
}

TEST_F(BaselineAlignmentTest, ASpacerBetweenTextsLendsNoBaseline) {
  // The title ... trailing label row: as tall as its texts, not as the proposal.
  const LayoutBox box = row(Baseline::first, {text("title"), spacer(), text("label")}, 300);
  EXPECT_DOUBLE_EQ(box.frame.height, 20);
  EXPECT_DOUBLE_EQ(box.children[0].frame.y, 0);
  EXPECT_DOUBLE_EQ(box.children[2].frame.y, 0);
  EXPECT_DOUBLE_EQ(box.children[2].frame.maxX(), 300);
}

TEST_F(BaselineAlignmentTest, BackgroundsLendNoBaseline) {
  LayoutNode pill = wrap(LayoutKind::background, padding(text("b"), {4, 0, 0, 0}));
  pill.children.push_back(text("ignored text in the background"));
  const LayoutBox box = row(Baseline::first, {text("a"), std::move(pill)});
  EXPECT_DOUBLE_EQ(box.children[0].frame.y, 4);
  EXPECT_DOUBLE_EQ(box.children[1].frame.y, 0);
}

TEST(BaselineAdapter, RowAlignmentsReachTheLayoutNodes) {
  struct Case {
    views::VerticalAlignment alignment;
    Baseline baseline;
    double fraction;
  };
  const Case cases[] = {{views::VerticalAlignment::firstTextBaseline, Baseline::first, 0.5},
                        {views::VerticalAlignment::lastTextBaseline, Baseline::last, 0.5},
                        {views::VerticalAlignment::bottom, Baseline::none, 1.0}};
  for (const auto& c : cases) {
    const auto adapted = adaptViewTree(views::hstack(c.alignment, {views::text("a")}), views::Environment{});
    EXPECT_EQ(adapted.content.alignment.baseline, c.baseline) << static_cast<int>(c.alignment);
    EXPECT_DOUBLE_EQ(adapted.content.alignment.vertical, c.fraction) << static_cast<int>(c.alignment);
  }
}

}  // namespace
}  // namespace quillan::render
