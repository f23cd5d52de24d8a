#include <gtest/gtest.h>

#include <cmath>

#include "CountingMeasurer.hpp"
#include "LayoutTestSupport.hpp"

namespace quillan::render {
namespace {

using namespace testing;

using LayoutTest = FakeMetricsLayout;

TEST_F(LayoutTest, LeastFlexibleChildIsServedFirstAndTheStackMayOverflow) {
  const LayoutNode node = stack(LayoutKind::hstack,
                                {flexFrame(color(), {.maxWidth = 100}), flexFrame(color(), {.minWidth = 100})}, 0.0);
  const LayoutBox box = run(node, {150, 50});
  EXPECT_DOUBLE_EQ(box.children[0].frame.width, 75);
  EXPECT_DOUBLE_EQ(box.children[1].frame.width, 100);
  EXPECT_DOUBLE_EQ(box.frame.width, 175);
  EXPECT_DOUBLE_EQ(box.children[1].frame.x, 75);
}

TEST_F(LayoutTest, EqualSplitWithDefaultSpacing) {
  const LayoutBox box = run(stack(LayoutKind::hstack, {color(), color(), color()}), {316, 40});
  ASSERT_EQ(box.children.size(), 3u);
  for (const auto& child : box.children) EXPECT_DOUBLE_EQ(child.frame.width, 100);
  EXPECT_DOUBLE_EQ(box.children[1].frame.x, 108);
  EXPECT_DOUBLE_EQ(box.children[2].frame.x, 216);
}

TEST_F(LayoutTest, TextGetsAShareBeforeColorsUnlessPrioritised) {
  // "Hello world" = 110 wide; a third of 300 wraps it.
  LayoutNode node = stack(LayoutKind::hstack, {color(), text("Hello world"), color()}, 0.0);
  LayoutBox box = run(node, {300, 100});
  EXPECT_DOUBLE_EQ(box.children[1].frame.width, 50);
  EXPECT_EQ(box.children[1].text->lines.size(), 2u);

  node.children[1].layoutPriority = 1;
  box = run(node, {300, 100});
  EXPECT_DOUBLE_EQ(box.children[1].frame.width, 110);
  EXPECT_DOUBLE_EQ(box.children[0].frame.width, 95);
}

TEST_F(LayoutTest, SpacersShareTheLeftoverAndHonourMinLength) {
  struct Case {
    std::optional<double> minLength;
    double proposal;
    double expectedSpacer;
  };
  // A squeezed text wraps rather than eat into the spacers' minimum.
  const Case cases[] = {
      {std::nullopt, 200, 75}, {0.0, 50, 0}, {std::nullopt, 66, 8}, {std::nullopt, 50, 10}, {2.5, 55, 2.5}};
  LayoutEngine halfPoints(measurer, 2.0);
  for (const auto& c : cases) {
    // "Hello" is 50 wide, between two spacers with no gaps next to them.
    const LayoutNode node = stack(LayoutKind::hstack, {spacer(c.minLength), text("Hello"), spacer(c.minLength)});
    const LayoutBox box = halfPoints.layout(node, ProposedSize::of({c.proposal, 40}));
    EXPECT_DOUBLE_EQ(box.children[0].frame.width, c.expectedSpacer) << c.proposal;
    EXPECT_DOUBLE_EQ(box.children[1].frame.x, c.expectedSpacer) << c.proposal;
    EXPECT_DOUBLE_EQ(box.children[2].frame.height, 0);
  }
}

TEST_F(LayoutTest, FlexibleFrameSizeRules) {
  struct Case {
    FrameSpec frame;
    double proposal;
    double expected;
  };
  // Child is "Hello" text: 50 wide ideally.
  const Case cases[] = {
      {{.maxWidth = std::numeric_limits<double>::infinity()}, 300, 300},
      {{.maxWidth = 100}, 300, 100},
      {{.minWidth = 80}, 60, 80},
      {{.minWidth = 80}, 300, 80},
      {{.minWidth = 20}, 300, 50},
      {{.minWidth = 20}, 30, 30},
      {{.minWidth = 0, .maxWidth = 120}, 30, 30},
      {{}, 300, 50},
  };
  for (const auto& c : cases) {
    const LayoutBox box = run(flexFrame(text("Hello"), c.frame, {0, 0.5}), {c.proposal, 100});
    EXPECT_DOUBLE_EQ(box.frame.width, c.expected) << c.proposal;
    EXPECT_DOUBLE_EQ(box.children[0].frame.x, 0);
  }
}

TEST_F(LayoutTest, FixedFrameCentresAnOverflowingChild) {
  const LayoutBox box = run(fixedFrame(fixedFrame(color(), 100, 100), 50, 50), {300, 300});
  EXPECT_EQ(box.frame, (Rect{0, 0, 50, 50}));
  EXPECT_EQ(box.children[0].frame, (Rect{-25, -25, 100, 100}));
}

TEST_F(LayoutTest, PaddingShrinksTheProposalAndGrowsTheSize) {
  const LayoutBox box = run(padding(text("Hello world"), {16, 16, 16, 16}), {100, 300});
  EXPECT_EQ(box.children[0].frame, (Rect{16, 16, 50, 40}));
  EXPECT_EQ(box.frame, (Rect{0, 0, 82, 72}));
}

TEST_F(LayoutTest, BackgroundTakesThePrimarySize) {
  LayoutNode node;
  node.kind = LayoutKind::background;
  node.children = {padding(text("3 more"), {0, 5, 0, 5}), color()};
  const LayoutBox box = run(node, {300, 300});
  EXPECT_EQ(box.frame, (Rect{0, 0, 70, 20}));
  EXPECT_EQ(box.children[1].frame, box.frame);
}

TEST_F(LayoutTest, ZStackIsTheUnionOfCentredChildren) {
  const LayoutBox box = run(stack(LayoutKind::zstack, {fixedFrame(color(), 40, 10), fixedFrame(color(), 10, 30)}),
                            {300, 300});
  EXPECT_EQ(box.frame, (Rect{0, 0, 40, 30}));
  EXPECT_EQ(box.children[1].frame, (Rect{15, 0, 10, 30}));
}

TEST_F(LayoutTest, PositionsSnapToThePixelGrid) {
  LayoutEngine retina(measurer, 3.0);
  const LayoutBox box = retina.layout(stack(LayoutKind::hstack, {color(), color(), color()}, 0.0),
                                      ProposedSize::of({100, 10}));
  EXPECT_NEAR(box.children[1].frame.x * 3, std::round(box.children[1].frame.x * 3), 1e-9);
  EXPECT_NEAR(box.children[1].frame.x, 33.333333, 1e-5);
}

TEST_F(LayoutTest, EveryChildIsMeasuredOncePerProposal) {
  // Six levels of nested stacks measure "Deep" some 36 times with the cache
  // and thousands of times without it.
  LayoutNode node = text("Deep");
  for (int i = 0; i < 6; ++i) node = stack(i % 2 ? LayoutKind::vstack : LayoutKind::hstack, {color(), node, color()});
  const CountingMeasurer counting(measurer);
  LayoutEngine counted(counting, 1.0);
  counted.layout(node, ProposedSize::of({300, 300}));
  EXPECT_LT(counting.bytesMeasured(), 4u * 250);
}

}  // namespace
}  // namespace quillan::render
