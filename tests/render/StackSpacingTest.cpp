#include <gtest/gtest.h>

#include "LayoutTestSupport.hpp"

namespace quillan::render {
namespace {

using namespace testing;

// A tenth of a line is 2, a generic view above a text keeps 6 and a text above
// a generic view 10.
class StackSpacingTest : public FakeMetricsLayout {
 protected:
  double gapBetween(LayoutNode above, LayoutNode below) {
    const LayoutBox box = engine.layout(stack(LayoutKind::vstack, {std::move(above), std::move(below)}),
                                        ProposedSize::of({200, 400}));
    return box.children[1].frame.y - box.children[0].frame.maxY();
  }
};

LayoutNode textRow() { return stack(LayoutKind::hstack, {text("2025"), text("note")}); }

TEST_F(StackSpacingTest, StacksSpaceLikeWhatTheyHoldOnEachEdge) {
  struct Case {
    const char* name;
    LayoutNode above, below;
    double gap;
  };
  const Case cases[] = {
      {"generic above a text", color(), text("a"), 6},
      {"text above a text", text("a"), text("b"), 0},
      {"text above a generic view", text("a"), color(), 10},
      {"padding all round makes both edges generic", color(), padding(text("a"), {1, 1, 1, 1}), 8},
      {"text above a row of texts", text("title"), stack(LayoutKind::vstack, {textRow()}), 0},
      {"row of texts above a generic view", textRow(), color(), 10},
      {"generic above a row of a text and a spacer", color(), stack(LayoutKind::hstack, {text("a"), spacer()}), 6},
      {"row of a text and a colour above a text: the larger gap wins", stack(LayoutKind::hstack, {text("a"), color()}),
       text("b"), 6},
      {"only the last child of a vstack faces down", stack(LayoutKind::vstack, {text("a"), color()}), text("b"), 6},
      {"only the first child of a vstack faces up", color(), stack(LayoutKind::vstack, {text("a"), color()}), 6},
      {"horizontal padding keeps a text's vertical preference", text("a"), padding(text("b"), {0, 5, 0, 5}), 0},
      {"top padding makes the edge generic", text("a"), padding(text("b"), {2.5, 0, 0, 0}), 10},
      {"a row of spacers asks for nothing", stack(LayoutKind::hstack, {spacer(0.0)}), color(), 0},
      {"an empty stack spaces like a generic view", stack(LayoutKind::hstack, {}), color(), 8},
  };
  for (const auto& c : cases) EXPECT_DOUBLE_EQ(gapBetween(c.above, c.below), c.gap) << c.name;
}

TEST_F(StackSpacingTest, HorizontalGapsSkipSpacersOnlyAtTheFacingEdge) {
  const auto gap = [&](LayoutNode before, LayoutNode after) {
    const LayoutBox box = engine.layout(stack(LayoutKind::hstack, {std::move(before), std::move(after)}),
                                        ProposedSize::of({400, 100}));
    return box.children[1].frame.x - box.children[0].frame.maxX();
  };
  EXPECT_DOUBLE_EQ(gap(text("a"), text("b")), 8);
  EXPECT_DOUBLE_EQ(gap(stack(LayoutKind::hstack, {color(), spacer(0.0)}), text("b")), 0);
  // On a vstack's sides every child counts, so one solid child keeps the gap.
  EXPECT_DOUBLE_EQ(gap(stack(LayoutKind::vstack, {spacer(0.0), text("a")}), text("b")), 8);
}

// The memory panel: date header, title, one memory whose note may take two
// lines, the "more" pill; 2.5 of top padding inside a 126-high area.
LayoutNode memoryPanel(std::string note) {
  LayoutNode header = stack(LayoutKind::hstack,
                            {stack(LayoutKind::vstack, {wrap(LayoutKind::offset, text("Nov 22"))}), spacer(0.0)});
  LayoutNode row = stack(LayoutKind::vstack, {stack(LayoutKind::hstack, {text("2025"), text(std::move(note), 2)})});
  LayoutNode pillBackground = wrap(LayoutKind::background, padding(text("3 more"), {0, 5, 0, 5}));
  pillBackground.children.push_back(color());
  LayoutNode pill = stack(LayoutKind::hstack, {spacer(2.5), std::move(pillBackground), spacer(2.5)});
  LayoutNode panel = stack(LayoutKind::vstack,
                           {std::move(header), text("On This Day"), std::move(row), std::move(pill)});
  panel.alignment.horizontal = 0;
  return padding(std::move(panel), {2.5, 0, 0, 0});
}

const LayoutBox& noteOf(const LayoutBox& panel) { return panel.children[0].children[2].children[0].children[1]; }

TEST_F(StackSpacingTest, MemoryNoteTakesTwoLinesWhenThePanelHasTheHeight) {
  struct Case {
    double height;
    std::size_t lines;
  };
  // Header, title and pill are 20 each and stack without gaps around text rows:
  // the note needs 60 + 40 + 2.5 of padding for two lines.
  const Case cases[] = {{126, 2}, {102.5, 2}, {102.4, 1}, {60, 1}};
  for (const auto& c : cases) {
    const LayoutBox box = engine.layout(memoryPanel("Finished the book at last after a long winter"),
                                        ProposedSize::of({150, c.height}));
    const LayoutBox& note = noteOf(box);
    ASSERT_TRUE(note.text) << c.height;
    EXPECT_EQ(note.text->lines.size(), c.lines) << c.height;
    EXPECT_TRUE(note.text->truncated) << c.height;
    EXPECT_DOUBLE_EQ(note.frame.height, 20.0 * static_cast<double>(c.lines)) << c.height;
  }
}

TEST_F(StackSpacingTest, ShortNoteStaysOnOneLineAndTheRowDoesNotGrow) {
  const LayoutNode panel = memoryPanel("Rain");
  const LayoutBox box = engine.layout(panel, ProposedSize::of({150, 126}));
  EXPECT_EQ(noteOf(box).text->lines.size(), 1u);
  EXPECT_FALSE(noteOf(box).text->truncated);
  EXPECT_DOUBLE_EQ(engine.sizeThatFits(panel, ProposedSize::of({150, 126})).height, 2.5 + 80);
}

}  // namespace
}  // namespace quillan::render
