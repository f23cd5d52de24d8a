#include <gtest/gtest.h>

#include "CountingMeasurer.hpp"
#include "LayoutTestSupport.hpp"
#include "render/FakeTextMeasurer.hpp"
#include "render/TextLayout.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::render {
namespace {

using testing::lineTexts;
using testing::plain;

const FakeTextMeasurer kMeasurer{10.0, 20.0};

std::optional<double> limit(const std::string& cell) {
  return cell == "-" ? std::nullopt : std::optional<double>(std::stod(cell));
}

// WIDTH | HEIGHT | LINE LIMIT | TEXT => the lines, and whether the last visible
// one was cut with an ellipsis.
std::string laidOut(const std::string& question) {
  const auto cells = quillan::testing::cells(question);
  const auto lineLimit = limit(cells[2]);
  const TextLimits limits{limit(cells[0]), limit(cells[1]),
                          lineLimit ? std::optional<int>(static_cast<int>(*lineLimit)) : std::nullopt};
  const TextLayout layout = layoutText(plain(quillan::testing::unescaped(cells[3])), kMeasurer, limits);
  EXPECT_EQ(layout.size.height, 20.0 * static_cast<double>(layout.lines.size())) << question;
  EXPECT_LE(layout.size.width, limits.width.value_or(layout.size.width)) << question;
  std::string answer;
  for (const auto& line : lineTexts(layout)) answer += "\"" + quillan::testing::escaped(line) + "\" ";
  EXPECT_EQ(layout.truncated, answer.ends_with("\u2026\" ")) << question;
  return answer + (layout.truncated ? "truncated" : "whole");
}

TEST(TextLayout, WrapsAtTheProposedWidthAndTruncatesTheLastVisibleLine) {
  quillan::testing::expectGoldenAnswers("text_layout.txt", laidOut);
}

TEST(TextLayout, KeepsRunStylesAcrossLineBreaks) {
  StyledText text = plain("plain ");
  text.push_back({"bold words", FontDescription{17, FontWeight::bold}, false, std::nullopt});
  const TextLayout layout = layoutText(text, kMeasurer, {110.0, std::nullopt, std::nullopt});
  ASSERT_EQ(layout.lines.size(), 2u);
  ASSERT_EQ(layout.lines[0].runs.size(), 2u);
  EXPECT_EQ(layout.lines[0].runs[1].text, "bold");
  EXPECT_EQ(layout.lines[0].runs[1].font.weight, FontWeight::bold);
  EXPECT_EQ(layout.lines[1].runs.at(0).text, "words");
  EXPECT_EQ(layout.lines[1].runs.at(0).font.weight, FontWeight::bold);
}

std::string repeatedTo(std::string_view unit, std::size_t bytes) {
  std::string text;
  text.reserve(bytes + unit.size());
  while (text.size() < bytes) text += unit;
  return text;
}

constexpr std::size_t kMegabyte = 1 << 20;
// Far above what the limits below show, far below the megabytes the whole
// text would cost.
constexpr std::size_t kMeasuredBytesBound = 64 * 1024;

TEST(TextLayout, AHugeTextIsMeasuredOnlyAsFarAsItsLimitsShow) {
  struct Case {
    const char* name;
    std::string text;
    TextLimits limits;
    std::vector<std::string> lines;
  };
  const std::string words = repeatedTo("Lorem ipsum dolor sit amet ", kMegabyte);
  const std::vector<std::string> twoLines{"Lorem ipsum dolor", "sit amet Lorem ipsu\u2026"};
  const Case cases[] = {
      {"line limit", words, {200, std::nullopt, 2}, twoLines},
      {"height, no line limit", words, {200, 45, std::nullopt}, twoLines},
      {"hard newlines", repeatedTo("ab\n", kMegabyte), {200, std::nullopt, 3}, {"ab", "ab", "ab\u2026"}},
      {"one long word", std::string(kMegabyte, 'x'), {95, std::nullopt, 2}, {"xxxxxxxxx", "xxxxxxxx\u2026"}},
      {"no width: the stack's minimum probe", words, {0, std::nullopt, 2}, {"L", "\u2026"}},
  };
  for (const auto& c : cases) {
    testing::CountingMeasurer counting(kMeasurer);
    const TextLayout layout = layoutText(plain(c.text), counting, c.limits);
    EXPECT_EQ(lineTexts(layout), c.lines) << c.name;
    EXPECT_TRUE(layout.truncated) << c.name;
    EXPECT_LT(counting.bytesMeasured(), kMeasuredBytesBound) << c.name;
    // The start of the text alone, short enough to be laid out whole, shows the same.
    const std::string start = c.text.substr(0, 400);
    EXPECT_EQ(lineTexts(layoutText(plain(start), kMeasurer, c.limits)), c.lines) << c.name;
  }
}

TEST(TextLayout, AHugeParagraphsIdealWidthStillExceedsEveryWidget) {
  testing::CountingMeasurer counting(kMeasurer);
  const TextLayout layout = layoutText(plain(std::string(kMegabyte, 'x')), counting, {});
  ASSERT_EQ(layout.lines.size(), 1u);
  EXPECT_TRUE(layout.truncated);
  EXPECT_GT(layout.size.width, kLargestWidgetWidth);
  EXPECT_LT(counting.bytesMeasured(), kMeasuredBytesBound);
}

TEST(TextLayout, CharactersNarrowerThanAssumedStillCostBoundedWork) {
  const FakeTextMeasurer zeroWidth(0.0, 20.0);
  testing::CountingMeasurer counting(zeroWidth);
  const TextLayout layout = layoutText(plain(repeatedTo("\u200b", kMegabyte)), counting, {200, std::nullopt, 2});
  EXPECT_EQ(layout.lines.size(), 2u);
  EXPECT_TRUE(layout.truncated);
  EXPECT_LT(counting.bytesMeasured(), kMeasuredBytesBound);
}

TEST(TextLayout, ATextCutShortEndsOnAWholeCharacter) {
  // A line wide enough to reach past kMaxLaidOutCodePoints ends at the cut; here it
  // falls between a letter and its accent, and inside a flag.
  const FakeTextMeasurer narrow(0.001, 20.0);
  for (const std::string& cluster : {std::string("e\u0301"), std::string("\U0001F1E9\U0001F1EA")}) {
    const std::string text = "x" + repeatedTo(cluster, 2 * 4 * kMaxLaidOutCodePoints);
    const TextLayout layout = layoutText(plain(text), narrow, {20000, std::nullopt, std::nullopt});
    ASSERT_EQ(layout.lines.size(), 1u);
    const std::string shown = lineTexts(layout).front();
    ASSERT_TRUE(shown.ends_with("\u2026"));
    const std::string kept = shown.substr(0, shown.size() - std::string("\u2026").size());
    EXPECT_EQ((kept.size() - 1) % cluster.size(), 0u) << "cut inside a cluster";
    EXPECT_GT(kept.size(), kMaxLaidOutCodePoints);
  }
}

TEST(ShownTextBound, LinesFollowTheTightestLimitAndTheTallestWidget) {
  EXPECT_EQ(shownTextBound({300, std::nullopt, 2}, 20, 17).lines, 2u);
  EXPECT_EQ(shownTextBound({300, 45, 5}, 20, 17).lines, 2u);
  EXPECT_EQ(shownTextBound({300, 5, std::nullopt}, 20, 17).lines, 1u);   // at least one
  EXPECT_EQ(shownTextBound({300, std::nullopt, 0}, 20, 17).lines, 20u);  // the tallest widget: 382 / 20
  EXPECT_EQ(shownTextBound({300, std::nullopt, -3}, 20, 17).lines, 20u);
  EXPECT_EQ(shownTextBound({300, std::nullopt, 1'000'000}, 20, 17).lines, 20u);
  // Absurd proposals and fonts stay finite.
  EXPECT_EQ(shownTextBound({1e300, std::nullopt, std::nullopt}, 0, 0).codePoints, kMaxLaidOutCodePoints);
  EXPECT_EQ(shownTextBound({-5, std::nullopt, 1}, 20, 17).lineCodePoints, 1u);
}

TEST(FontDescription, TrackingFollowsTheSizeTable) {
  EXPECT_DOUBLE_EQ(trackingForSize(17), -0.43);
  EXPECT_DOUBLE_EQ(trackingForSize(12), 0.0);
  EXPECT_NEAR(trackingForSize(18), -0.43 + (-0.45 + 0.43) / 3, 1e-12);
  EXPECT_DOUBLE_EQ(trackingForSize(8), 0.06);
  EXPECT_DOUBLE_EQ(trackingForSize(60), 0.40);
}

}  // namespace
}  // namespace quillan::render
