#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "LayoutTestSupport.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/TextLayout.hpp"

namespace quillan::render {
namespace {

using testing::lineTexts;
using testing::plain;

std::string joined(const std::vector<std::string>& lines) {
  return std::accumulate(lines.begin(), lines.end(), std::string());
}

TextLayout laidOut(const std::string& text, std::optional<double> width, std::optional<int> lineLimit = {}) {
  return PangoTextMeasurer::shared().layout(plain(text), {width, std::nullopt, lineLimit});
}

const std::string kFamily = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";

TEST(PangoTextLayout, NeverBreaksInsideAGraphemeCluster) {
  struct Case {
    const char* name;
    std::string text;
    std::string cluster;
  };
  const Case cases[] = {
      {"family emoji joined by ZWJ", kFamily + kFamily + kFamily + kFamily, kFamily},
      {"letters with combining accents", "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301", "e\u0301"},
      {"flags", "\U0001F1EF\U0001F1F5\U0001F1EF\U0001F1F5\U0001F1EF\U0001F1F5", "\U0001F1EF\U0001F1F5"},
      {"skin tones", "\U0001F44D\U0001F3FD\U0001F44D\U0001F3FD\U0001F44D\U0001F3FD", "\U0001F44D\U0001F3FD"},
  };
  for (const auto& c : cases) {
    // Narrower than one cluster: each line holds exactly one, whole.
    const TextLayout layout = laidOut(c.text, 1);
    for (const auto& line : lineTexts(layout)) EXPECT_EQ(line, c.cluster) << c.name;
    EXPECT_EQ(joined(lineTexts(layout)), c.text) << c.name;
  }
}

TEST(PangoTextLayout, BreaksWhereTheScriptAllows) {
  // Thai and Japanese have no spaces between words; Thai vowel and tone marks
  // sit on their consonant and never start a line.
  const std::string thai = "วันนี้คุณเขียนบันทึกแล้วหรือยังวันนี้คุณเขียนบันทึกแล้วหรือยัง";
  const std::string japanese = "今日は日記を書きましたか今日は日記を書きましたか今日は日記を書きましたか";
  for (const auto& text : {thai, japanese}) {
    const TextLayout layout = laidOut(text, 90);
    const auto lines = lineTexts(layout);
    EXPECT_GT(lines.size(), 2u) << text;
    EXPECT_EQ(joined(lines), text);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_LE(layout.lines[i].width, 90 + 1e-6) << lines[i];
      for (const char* mark :
           {"\u0E31", "\u0E34", "\u0E35", "\u0E36", "\u0E37", "\u0E38", "\u0E48", "\u0E49", "\u0E4C"})
        EXPECT_FALSE(lines[i].starts_with(mark)) << lines[i];
    }
  }
}

TEST(PangoTextLayout, WrapsAtSpacesDroppingThemAtLineEndsAndAfterHyphens) {
  const TextLayout whole = laidOut("well-known", std::nullopt);
  const TextLayout first = laidOut("well-", std::nullopt);
  // Room for "well-" but not for the whole word.
  const double width = (first.size.width + whole.size.width) / 2;
  EXPECT_EQ(lineTexts(laidOut("well-known", width)), (std::vector<std::string>{"well-", "known"}));
  const TextLayout one = laidOut("Hello world", std::nullopt);
  ASSERT_EQ(one.lines.size(), 1u);
  EXPECT_EQ(lineTexts(laidOut("Hello world", one.size.width)), std::vector<std::string>{"Hello world"});
  const TextLayout two = laidOut("Hello world", one.size.width - 0.5);
  EXPECT_EQ(lineTexts(two), (std::vector<std::string>{"Hello", "world"}));
  EXPECT_DOUBLE_EQ(two.lines[0].width, laidOut("Hello", std::nullopt).size.width);
  EXPECT_DOUBLE_EQ(two.size.height, 2 * two.lineHeight);
}

TEST(PangoTextLayout, EndsTheLastLineItMayShowInAnEllipsis) {
  struct Case {
    const char* text;
    std::optional<double> width;
    std::optional<int> lineLimit;
    std::size_t lines;
  };
  const Case cases[] = {
      {"one two three four five six seven eight nine ten", 80, 2, 2},
      {"first\nsecond\nthird", std::nullopt, 2, 2},
      {"first paragraph\nsecond paragraph\nthird", 60, 3, 3},
      {"Walked by the river with the dog, then tea at the old mill.", 100, 1, 1},
  };
  for (const auto& c : cases) {
    const TextLayout layout = laidOut(c.text, c.width, c.lineLimit);
    const auto lines = lineTexts(layout);
    ASSERT_EQ(lines.size(), c.lines) << c.text;
    EXPECT_TRUE(layout.truncated) << c.text;
    EXPECT_TRUE(lines.back().ends_with("\u2026")) << lines.back();
    EXPECT_FALSE(lines.back().ends_with(" \u2026")) << lines.back();
    if (c.width) {
      EXPECT_LE(layout.size.width, *c.width + 1e-6) << c.text;
    }
  }
  EXPECT_FALSE(laidOut("short", 100, 1).truncated);
}

TEST(PangoTextLayout, ShowsTheTextAndTheFontsThatDrewIt) {
  const TextLayout layout = laidOut("Day \U0001F600 \u65E5", std::nullopt);
  ASSERT_EQ(layout.lines.size(), 1u);
  EXPECT_EQ(layout.missingGlyphs, 0u);
  const auto& fonts = layout.lines[0].fonts;
  EXPECT_NE(std::find(fonts.begin(), fonts.end(), UsedFont{"Inter", 17}), fonts.end());
  EXPECT_EQ(fonts.size(), 3u);  // Inter, an emoji font and a CJK font
  ASSERT_TRUE(layout.shaped);
  EXPECT_GT(layout.ascender, 0);
  EXPECT_LT(layout.ascender, layout.lineHeight);
}

TEST(PangoTextLayout, SharesOneLayoutPerTextAndProposal) {
  const TextLayout first = laidOut("shared layout", 120);
  EXPECT_EQ(laidOut("shared layout", 120).shaped, first.shaped);
  EXPECT_NE(laidOut("shared layout", 40).shaped, first.shaped);
}

}  // namespace
}  // namespace quillan::render
