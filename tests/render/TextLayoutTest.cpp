#include "render/TextLayout.hpp"

#include <gtest/gtest.h>

#include "render/FakeTextMeasurer.hpp"

namespace quillan::render {
namespace {

StyledText plain(std::string s) { return {StyledRun{std::move(s), FontDescription{}, false, std::nullopt}}; }

std::vector<std::string> lineTexts(const TextLayout& layout) {
  std::vector<std::string> out;
  for (const auto& line : layout.lines) out.push_back(plainText(line.runs));
  return out;
}

const FakeTextMeasurer kMeasurer{10.0, 20.0};

TEST(TextLayout, WrapsExactlyAtTheProposedWidth) {
  struct Case { const char* text; std::optional<double> width; std::vector<std::string> lines; };
  const Case cases[] = {
      {"Hello", 50.01, {"Hello"}},
      {"Hello", 50.0, {"Hello"}},
      {"Hello", 49.99, {"Hell", "o"}},
      {"Hello world", 110, {"Hello world"}},
      {"Hello world", 109.99, {"Hello", "world"}},
      {"Hello world", std::nullopt, {"Hello world"}},
      {"a\nb c", std::nullopt, {"a", "b c"}},
      {"# Title\n\nbody", std::nullopt, {"# Title", "", "body"}},
      {"Hello   world", 60, {"Hello", "world"}},
      {"", 100, {""}},
  };
  for (const auto& c : cases) {
    const TextLayout layout = layoutText(plain(c.text), kMeasurer, {c.width, std::nullopt, std::nullopt});
    EXPECT_EQ(lineTexts(layout), c.lines) << c.text << " at " << c.width.value_or(-1);
    EXPECT_EQ(layout.size.height, 20.0 * static_cast<double>(c.lines.size()));
  }
}

TEST(TextLayout, TruncatesTheLastVisibleLineWithAnEllipsis) {
  struct Case { const char* text; std::optional<double> width; std::optional<double> height;
                std::optional<int> lineLimit; std::vector<std::string> lines; };
  const Case cases[] = {
      {"one two three four", 80, std::nullopt, 2, {"one two", "three f\u2026"}},
      {"one two three four", 80, 45, std::nullopt, {"one two", "three f\u2026"}},
      {"one two three four", 80, 10, std::nullopt, {"one two\u2026"}},  // at least one line
      {"Hello world", 60, std::nullopt, 1, {"Hello\u2026"}},
      {"line1\nline2\nline3", std::nullopt, std::nullopt, 2, {"line1", "line2\u2026"}},
      {"short", 100, std::nullopt, 1, {"short"}},
  };
  for (const auto& c : cases) {
    const TextLayout layout = layoutText(plain(c.text), kMeasurer, {c.width, c.height, c.lineLimit});
    EXPECT_EQ(lineTexts(layout), c.lines) << c.text;
    EXPECT_EQ(layout.truncated, c.lines.back().ends_with("\u2026")) << c.text;
    if (c.width) {
      EXPECT_LE(layout.size.width, *c.width) << c.text;
    }
  }
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

TEST(TextLayout, CountsCodePointsNotBytes) {
  const TextLayout layout = layoutText(plain("\u00e9t\u00e9"), kMeasurer, {std::nullopt, std::nullopt, std::nullopt});
  EXPECT_EQ(layout.size.width, 30);
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
