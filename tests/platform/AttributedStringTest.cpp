#include <gtest/gtest.h>

#include "platform/AttributedString.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"
#include "support/SmallStack.hpp"

namespace quillan::platform {
namespace {

std::vector<TextRun> runsOf(std::string_view markdown) { return AttributedString::fromInlineMarkdown(markdown).runs(); }

// Each run as [flags]"text", flags b(old) i(talic) s(trikethrough) c(ode) and
// the link's target.
std::string describe(const std::vector<TextRun>& runs) {
  std::string text;
  for (const auto& run : runs) {
    text += text.empty() ? "[" : " [";
    text += std::string(run.bold ? "b" : "") + (run.italic ? "i" : "") + (run.strikethrough ? "s" : "") +
            (run.code ? "c" : "") + (run.link ? " " + *run.link : "");
    text += "]\"" + quillan::testing::escaped(run.text) + "\"";
  }
  return text;
}

// Inline syntax is styled, also across the line breaks of one paragraph;
// block syntax (on the first line or on a line that would start a block inside
// a paragraph) and whitespace stay as typed, and a blank line ends emphasis.
TEST(InlineMarkdown, ParsesAsTheGoldenFileSays) {
  quillan::testing::expectGoldenAnswers("markdown_inline.txt", [](const std::string& line) {
    return describe(runsOf(quillan::testing::unescaped(line)));
  });
}

std::string repeated(std::string_view unit, std::size_t count) {
  std::string text;
  text.reserve(unit.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += unit;
  return text;
}

std::string nested(std::string_view open, std::string_view middle, std::string_view close, std::size_t depth) {
  return repeated(open, depth) + std::string(middle) + repeated(close, depth);
}

TEST(InlineMarkdown, DeeplyNestedSyntaxIsWalkedOnASmallStack) {
  constexpr std::size_t kDepth = 100'000;
  const std::pair<std::string, std::string> cases[] = {
      {nested("*", "x", "*", kDepth), "[b]\"x\""},
      {nested("_", "x", "_", kDepth), "[b]\"x\""},
      {nested("*", "x", "*", kDepth + 1), "[bi]\"x\""},
      {nested("![", "x", "](u)", kDepth), "[]\"x\""},
      {nested("*![", "x", "](u)*", kDepth), "[i]\"x\""},
      {nested("[", "x", "](u)", kDepth),
       "[]\"" + repeated("[", kDepth - 1) + "\" [ u]\"x\" []\"" + repeated("](u)", kDepth - 1) + "\""},
      {nested("~~", "x", "~~", kDepth), "[]\"" + nested("~~", "x", "~~", kDepth) + "\""},
      {nested("~", "x", "~", kDepth), "[]\"" + nested("~", "x", "~", kDepth) + "\""},
  };
  // Compared whole, not printed: the texts are megabytes long.
  testing::runOnStackOf(1 << 20, [&] {
    for (const auto& [markdown, runs] : cases) EXPECT_TRUE(describe(runsOf(markdown)) == runs) << markdown.substr(0, 8);
  });
}

// Markdown is read only within a bound of bytes (moved back to a character's
// start) and the rest kept as typed; text that is not UTF-8 is refused whole.
TEST(InlineMarkdown, ReadsWithinTheGivenBytesAndRefusesTextThatIsNotUtf8) {
  quillan::testing::expectGoldenAnswers("markdown_bounded.txt", [](const std::string& question) {
    const auto split = quillan::testing::cells(question);
    const auto markdown = quillan::testing::unescaped(split[1]);
    try {
      return describe(split[0] == "whole"
                          ? runsOf(markdown)
                          : AttributedString::fromInlineMarkdown(markdown, std::stoul(split[0])).runs());
    } catch (const MarkdownParseError& error) {
      return "refused: " + std::string(error.what());
    }
  });
}

TEST(AttributedString, PlainTextIsOneUnstyledRun) {
  EXPECT_EQ(describe(AttributedString("**not parsed**").runs()), "[]\"**not parsed**\"");
  EXPECT_TRUE(AttributedString("").runs().empty());
  EXPECT_EQ(AttributedString::fromInlineMarkdown("").plainText(), "");
}

}  // namespace
}  // namespace quillan::platform
