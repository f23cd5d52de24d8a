#include <gtest/gtest.h>

#include <cstring>

#include "platform/AttributedString.hpp"
#include "support/GoldenFile.hpp"
#include "support/SmallStack.hpp"

namespace quillan::platform {
namespace {

TextRun plain(std::string text) {
  TextRun run;
  run.text = std::move(text);
  return run;
}

TextRun styled(std::string text, bool bold, bool italic, bool strike = false, bool code = false) {
  TextRun run = plain(std::move(text));
  run.bold = bold;
  run.italic = italic;
  run.strikethrough = strike;
  run.code = code;
  return run;
}

TextRun link(std::string text, std::string url) {
  TextRun run = plain(std::move(text));
  run.link = std::move(url);
  return run;
}

std::vector<TextRun> runsOf(std::string_view markdown) { return AttributedString::fromInlineMarkdown(markdown).runs(); }

// "\n", "\r", "\t" and "\\" in a data file's line stand for themselves.
std::string unescaped(const std::string& line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char next = i + 1 < line.size() ? line[i + 1] : '\0';
    const char* known = std::strchr("nrt\\", next);
    if (line[i] != '\\' || next == '\0' || known == nullptr) {
      text += line[i];
      continue;
    }
    text += next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : '\\';
    ++i;
  }
  return text;
}

std::string escaped(const std::string& text) {
  std::string line;
  for (const char c : text) line += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
  return line;
}

// Each run as [flags]"text", flags b(old) i(talic) s(trikethrough) c(ode) and
// the link's target.
std::string describe(const std::vector<TextRun>& runs) {
  std::string text;
  for (const auto& run : runs) {
    text += text.empty() ? "[" : " [";
    text += std::string(run.bold ? "b" : "") + (run.italic ? "i" : "") + (run.strikethrough ? "s" : "") +
            (run.code ? "c" : "") + (run.link ? " " + *run.link : "");
    text += "]\"" + escaped(run.text) + "\"";
  }
  return text;
}

// Inline syntax is styled, also across the line breaks of one paragraph;
// block syntax (on the first line or on a line that would start a block inside
// a paragraph) and whitespace stay as typed, and a blank line ends emphasis.
TEST(InlineMarkdown, ParsesAsTheGoldenFileSays) {
  quillan::testing::expectGoldenAnswers("markdown_inline.txt",
                                        [](const std::string& line) { return describe(runsOf(unescaped(line))); });
}

TEST(InlineMarkdown, TextThatIsNotUtf8IsAParseError) {
  for (const std::string& text : {std::string("abc\xff"), std::string("\xc3"), std::string("\xc0\xaf"),
                                  std::string("\xed\xa0\x80"), std::string("**\xf5\x80\x80\x80**")}) {
    try {
      AttributedString::fromInlineMarkdown(text);
      ADD_FAILURE() << "no error for invalid UTF-8";
    } catch (const MarkdownParseError& error) {
      EXPECT_EQ(std::string(error.what()), kMarkdownParseErrorDescription);
    }
  }
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
  struct Case {
    std::string markdown;
    std::vector<TextRun> runs;
  };
  const std::vector<Case> cases = {
      {nested("*", "x", "*", kDepth), {styled("x", true, false)}},
      {nested("_", "x", "_", kDepth), {styled("x", true, false)}},
      {nested("*", "x", "*", kDepth + 1), {styled("x", true, true)}},
      {nested("![", "x", "](u)", kDepth), {plain("x")}},
      {nested("*![", "x", "](u)*", kDepth), {styled("x", false, true)}},
      {nested("[", "x", "](u)", kDepth),
       {plain(repeated("[", kDepth - 1)), link("x", "u"), plain(repeated("](u)", kDepth - 1))}},
      {nested("~~", "x", "~~", kDepth), {plain(nested("~~", "x", "~~", kDepth))}},
      {nested("~", "x", "~", kDepth), {plain(nested("~", "x", "~", kDepth))}},
  };
  std::vector<std::vector<TextRun>> results;
  testing::runOnStackOf(1 << 20, [&] {
    for (const auto& c : cases) results.push_back(runsOf(c.markdown));
  });
  ASSERT_EQ(results.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(results[i], cases[i].runs) << "case " << i << ": " << cases[i].markdown.substr(0, 8) << "...";
  }
}

TEST(InlineMarkdown, MarkdownIsReadOnlyWithinTheGivenBytesAndTheRestKeptAsTyped) {
  EXPECT_EQ(AttributedString::fromInlineMarkdown("**a** *b* **c**", 9).runs(),
            (std::vector<TextRun>{styled("a", true, false), plain(" "), styled("b", false, true), plain(" **c**")}));
  // Emphasis that closes past the bound stays literal.
  EXPECT_EQ(AttributedString::fromInlineMarkdown("*ab*", 3).runs(), std::vector<TextRun>{plain("*ab*")});
  // A bound inside a character moves back before it.
  EXPECT_EQ(AttributedString::fromInlineMarkdown("*é*", 2).runs(), std::vector<TextRun>{plain("*é*")});
  EXPECT_EQ(AttributedString::fromInlineMarkdown("a\n**b**", 0).runs(), std::vector<TextRun>{plain("a\n**b**")});
  EXPECT_THROW(AttributedString::fromInlineMarkdown("**a** \xff", 5), MarkdownParseError);
}

TEST(AttributedString, PlainTextIsOneUnstyledRun) {
  EXPECT_EQ(AttributedString("**not parsed**").runs(), std::vector<TextRun>{plain("**not parsed**")});
  EXPECT_TRUE(AttributedString("").runs().empty());
  EXPECT_EQ(AttributedString::fromInlineMarkdown("").plainText(), "");
}

}  // namespace
}  // namespace quillan::platform
