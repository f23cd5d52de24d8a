#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CountingMeasurer.hpp"
#include "LayoutTestSupport.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::render {
namespace {

using namespace testing;
using Json = nlohmann::json;

// Layouts with fake metrics: ten points a character; line 20, ascender 16,
// descender 4, cap 12.
class FakeMetricsLayout : public ::testing::Test {
 protected:
  FakeTextMeasurer measurer{10.0, 20.0};
};

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

// The cases of tests/data/golden/layout_cases.txt, their layouts compared with
// layout_cases.json there.
TEST_F(FakeMetricsLayout, EveryCaseIsLaidOutAsTheGoldenFileHolds) {
  Json actual = Json::object();
  quillan::testing::forEachCase("layout_cases.txt", [&](const std::vector<std::string>& cells) {
    const auto by = cells[1].find('x'), at = cells[1].find('@');
    const Size proposal{std::stod(cells[1].substr(0, by)), std::stod(cells[1].substr(by + 1))};
    LayoutEngine onGrid(measurer, at == std::string::npos ? 1 : std::stod(cells[1].substr(at + 1)));
    actual[cells[0]] = boxJson(onGrid.layout(LayoutTreeText(cells[2]).node(), ProposedSize::of(proposal)));
  });
  quillan::testing::expectGoldenJson(actual, "layout_cases.json");
}

TEST_F(FakeMetricsLayout, EveryChildIsMeasuredOncePerProposal) {
  // Six levels of nested stacks measure "Deep" some 36 times with the cache
  // and thousands of times without it.
  std::string tree = "text \"Deep\"";
  for (int i = 0; i < 6; ++i) tree = (i % 2 ? "vstack (color, " : "hstack (color, ") + tree + ", color)";
  const CountingMeasurer counting(measurer);
  LayoutEngine counted(counting, 1.0);
  counted.layout(LayoutTreeText(tree).node(), ProposedSize::of({300, 300}));
  EXPECT_LT(counting.bytesMeasured(), 4u * 250);
}

}  // namespace
}  // namespace quillan::render
