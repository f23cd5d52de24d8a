#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <limits>

#include <nlohmann/json.hpp>

#include "CountingMeasurer.hpp"
#include "LayoutTestSupport.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::render {
namespace {

using namespace testing;
using Json = nlohmann::json;

// One small tree laid out with fake metrics at a proposal, on a grid of
// `scale` pixels a point.
struct LayoutCase {
  std::string name;
  LayoutNode node;
  Size proposal;
  double scale = 1;
};

LayoutNode prioritised(LayoutNode stackNode, std::size_t child) {
  stackNode.children[child].layoutPriority = 1;
  return stackNode;
}

LayoutNode baselineRow(Baseline baseline, std::vector<LayoutNode> children) {
  LayoutNode row = stack(LayoutKind::hstack, std::move(children));
  row.alignment.baseline = baseline;
  return row;
}

LayoutNode background(LayoutNode primary, LayoutNode behind) {
  LayoutNode node = wrap(LayoutKind::background, std::move(primary));
  node.children.push_back(std::move(behind));
  return node;
}

LayoutNode spacedHello(std::optional<double> minLength) {
  return stack(LayoutKind::hstack, {spacer(minLength), text("Hello"), spacer(minLength)});
}

LayoutNode textRow() { return stack(LayoutKind::hstack, {text("2025"), text("note")}); }

LayoutNode above(LayoutNode top, LayoutNode bottom) {
  return stack(LayoutKind::vstack, {std::move(top), std::move(bottom)});
}
LayoutNode beside(LayoutNode left, LayoutNode right) {
  return stack(LayoutKind::hstack, {std::move(left), std::move(right)});
}

// The memory panel: date header, title, one memory whose note may take two
// lines, the "more" pill; 2.5 of top padding.
LayoutNode memoryPanel(std::string note) {
  LayoutNode header = stack(LayoutKind::hstack,
                            {stack(LayoutKind::vstack, {wrap(LayoutKind::offset, text("Nov 22"))}), spacer(0.0)});
  LayoutNode row = stack(LayoutKind::vstack, {stack(LayoutKind::hstack, {text("2025"), text(std::move(note), 2)})});
  LayoutNode pill = stack(LayoutKind::hstack,
                          {spacer(2.5), background(padding(text("3 more"), {0, 5, 0, 5}), color()), spacer(2.5)});
  LayoutNode panel = stack(LayoutKind::vstack,
                           {std::move(header), text("On This Day"), std::move(row), std::move(pill)});
  panel.alignment.horizontal = 0;
  return padding(std::move(panel), {2.5, 0, 0, 0});
}

// Ten points a character, lines 20 high with a 16 ascender: "Hello" is 50
// wide, "Hello world" 110. A tenth of a line is 2, so a generic view above a
// text keeps 6, a text above a generic view 10, two texts 0 and two generic
// views 8.
std::vector<LayoutCase> layoutCases() {
  const auto flexHello = [](FrameSpec frame) { return flexFrame(text("Hello"), frame, {0, 0.5}); };
  const double infinity = std::numeric_limits<double>::infinity();
  const LayoutNode wrappedText = fixedFrame(text("aaaa bbbb"), 40, std::nullopt);
  const LayoutNode paddedText = padding(text("c"), {10, 0, 0, 0});
  const std::string longNote = "Finished the book at last after a long winter";
  return {
      // Stacks serve the least flexible child first, and may overflow.
      {"least flexible first",
       stack(LayoutKind::hstack, {flexFrame(color(), {.maxWidth = 100}), flexFrame(color(), {.minWidth = 100})}, 0.0),
       {150, 50}},
      {"equal split with default spacing", stack(LayoutKind::hstack, {color(), color(), color()}), {316, 40}},
      {"a text gets a third and wraps",
       stack(LayoutKind::hstack, {color(), text("Hello world"), color()}, 0.0),
       {300, 100}},
      {"a prioritised text is served first",
       prioritised(stack(LayoutKind::hstack, {color(), text("Hello world"), color()}, 0.0), 1),
       {300, 100}},
      // Spacers share the leftover; a squeezed text wraps rather than eat into their minimum.
      {"spacers share the leftover", spacedHello(std::nullopt), {200, 40}, 2},
      {"spacers of no minimum", spacedHello(0.0), {50, 40}, 2},
      {"spacers keep their default minimum", spacedHello(std::nullopt), {66, 40}, 2},
      {"the text wraps before spacers shrink", spacedHello(std::nullopt), {50, 40}, 2},
      {"spacers keep their own minimum", spacedHello(2.5), {55, 40}, 2},
      {"a frame of infinite maximum fills", flexHello({.maxWidth = infinity}), {300, 100}},
      {"a frame's maximum caps", flexHello({.maxWidth = 100}), {300, 100}},
      {"a frame's minimum overrides a small proposal", flexHello({.minWidth = 80}), {60, 100}},
      {"a frame's minimum alone does not fill", flexHello({.minWidth = 80}), {300, 100}},
      {"a small minimum takes the child's size", flexHello({.minWidth = 20}), {300, 100}},
      {"a small minimum takes a smaller proposal", flexHello({.minWidth = 20}), {30, 100}},
      {"a range takes the proposal within it", flexHello({.minWidth = 0, .maxWidth = 120}), {30, 100}},
      {"a frame without limits is its child's size", flexHello({}), {300, 100}},
      {"a fixed frame centres an overflowing child", fixedFrame(fixedFrame(color(), 100, 100), 50, 50), {300, 300}},
      {"padding shrinks the proposal and grows the size", padding(text("Hello world"), {16, 16, 16, 16}), {100, 300}},
      {"a background takes the primary size", background(padding(text("3 more"), {0, 5, 0, 5}), color()), {300, 300}},
      {"a zstack is the union of centred children",
       stack(LayoutKind::zstack, {fixedFrame(color(), 40, 10), fixedFrame(color(), 10, 30)}),
       {300, 300}},
      {"positions snap to thirds of a point",
       stack(LayoutKind::hstack, {color(), color(), color()}, 0.0),
       {100, 10},
       3},
      // Rows share the chosen baseline: the first child wraps to two lines, the second's lies at 26.
      {"first baselines", baselineRow(Baseline::first, {wrappedText, paddedText}), {400, 200}},
      {"last baselines", baselineRow(Baseline::last, {wrappedText, paddedText}), {400, 200}},
      {"a view without text sits on the baseline with its bottom",
       baselineRow(Baseline::first, {fixedFrame(color(), 10, 10), text("a")}),
       {400, 200}},
      {"a tall shape lifts the text",
       baselineRow(Baseline::first, {fixedFrame(color(), 10, 40), text("a")}),
       {400, 200}},
      {"a spacer between texts lends no baseline",
       baselineRow(Baseline::first, {text("title"), spacer(), text("label")}),
       {300, 200}},
      {"backgrounds lend no baseline",
       baselineRow(Baseline::first,
                   {text("a"), background(padding(text("b"), {4, 0, 0, 0}), text("ignored text in the background"))}),
       {400, 200}},
      // Stacks space like what they hold on each edge.
      {"generic above a text", above(color(), text("a")), {200, 400}},
      {"text above a text", above(text("a"), text("b")), {200, 400}},
      {"text above a generic view", above(text("a"), color()), {200, 400}},
      {"padding all round makes both edges generic", above(color(), padding(text("a"), {1, 1, 1, 1})), {200, 400}},
      {"text above a row of texts", above(text("title"), stack(LayoutKind::vstack, {textRow()})), {200, 400}},
      {"row of texts above a generic view", above(textRow(), color()), {200, 400}},
      {"generic above a row of a text and a spacer", above(color(), beside(text("a"), spacer())), {200, 400}},
      {"the larger gap of a row wins", above(beside(text("a"), color()), text("b")), {200, 400}},
      {"only the last child of a vstack faces down", above(above(text("a"), color()), text("b")), {200, 400}},
      {"only the first child of a vstack faces up", above(color(), above(text("a"), color())), {200, 400}},
      {"horizontal padding keeps a text's vertical preference",
       above(text("a"), padding(text("b"), {0, 5, 0, 5})),
       {200, 400}},
      {"top padding makes the edge generic", above(text("a"), padding(text("b"), {2.5, 0, 0, 0})), {200, 400}},
      {"a row of spacers asks for nothing", above(stack(LayoutKind::hstack, {spacer(0.0)}), color()), {200, 400}},
      {"an empty stack spaces like a generic view", above(stack(LayoutKind::hstack, {}), color()), {200, 400}},
      {"texts side by side", beside(text("a"), text("b")), {400, 100}},
      {"a spacer at the facing edge skips the gap", beside(beside(color(), spacer(0.0)), text("b")), {400, 100}},
      {"on a vstack's side every child counts", beside(above(spacer(0.0), text("a")), text("b")), {400, 100}},
      // Header, title and pill are 20 each: two lines of note need 60 + 40 + 2.5 of padding.
      {"a memory panel with room for two lines", memoryPanel(longNote), {150, 126}},
      {"a memory panel just tall enough for two lines", memoryPanel(longNote), {150, 102.5}},
      {"a memory panel too short for two lines", memoryPanel(longNote), {150, 102.4}},
      {"a memory panel far too short", memoryPanel(longNote), {150, 60}},
      {"a short note stays on one line and the row does not grow", memoryPanel("Rain"), {150, 126}},
  };
}

// Every box's frame, and each text's lines.
Json boxJson(const LayoutBox& box) {
  Json json = {{"frame", {box.frame.x, box.frame.y, box.frame.width, box.frame.height}}};
  if (box.text) {
    for (const auto& line : box.text->lines) json["lines"].push_back(plainText(line.runs));
    json["truncated"] = box.text->truncated;
  }
  for (const auto& child : box.children) json["children"].push_back(boxJson(child));
  return json;
}

// The cases' layouts are compared with tests/data/golden/layout_cases.json.
// QUILLAN_UPDATE_GOLDEN=1 rewrites the file instead (review the diff!).
TEST_F(FakeMetricsLayout, EveryCaseIsLaidOutAsTheGoldenFileHolds) {
  Json actual = Json::object();
  for (const auto& layoutCase : layoutCases()) {
    LayoutEngine onGrid(measurer, layoutCase.scale);
    actual[layoutCase.name] = boxJson(onGrid.layout(layoutCase.node, ProposedSize::of(layoutCase.proposal)));
  }
  const auto path = quillan::testing::goldenPath("layout_cases.json");
  if (std::getenv("QUILLAN_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << actual.dump(1) << "\n";
  const Json golden = Json::parse(quillan::testing::readGolden("layout_cases.json"), nullptr, false);
  ASSERT_TRUE(golden.is_object()) << "cannot read " << path;
  EXPECT_EQ(golden.size(), actual.size()) << "cases added or removed: rewrite the file";
  for (const auto& [name, box] : actual.items()) EXPECT_EQ(box, golden.value(name, Json())) << name;
}

TEST_F(FakeMetricsLayout, EveryChildIsMeasuredOncePerProposal) {
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
