#include <gtest/gtest.h>

#include "platform/AttributedString.hpp"
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

TEST(InlineMarkdown, InlineSyntaxBecomesStyledRuns) {
  struct Case {
    const char* markdown;
    std::vector<TextRun> runs;
  };
  const Case cases[] = {
      {"a **bold** word", {plain("a "), styled("bold", true, false), plain(" word")}},
      {"__bold__", {styled("bold", true, false)}},
      {"an _italic_ word", {plain("an "), styled("italic", false, true), plain(" word")}},
      {"*italic*", {styled("italic", false, true)}},
      {"***both***", {styled("both", true, true)}},
      {"**bold *and italic***", {styled("bold ", true, false), styled("and italic", true, true)}},
      {"~~gone~~ here", {styled("gone", false, false, true), plain(" here")}},
      {"use `x * y`", {plain("use "), styled("x * y", false, false, false, true)}},
      {"[site](https://example.org/a) now", {link("site", "https://example.org/a"), plain(" now")}},
      {"<https://example.org>", {link("https://example.org", "https://example.org")}},
      {"snake_case_name", {plain("snake_case_name")}},
      {"2 * 3 * 4", {plain("2 * 3 * 4")}},
      {"\\*not italic\\*", {plain("*not italic*")}},
      {"**unclosed", {plain("**unclosed")}},
      // Adjacent runs with the same styles merge; entities decode; Unicode is kept.
      {"**a** **b**\nplain &amp; text",
       {styled("a", true, false), plain(" "), styled("b", true, false), plain("\nplain & text")}},
      {"Grüße **日本語** 🎉", {plain("Grüße "), styled("日本語", true, false), plain(" 🎉")}},
  };
  for (const auto& c : cases) EXPECT_EQ(runsOf(c.markdown), c.runs) << c.markdown;
}

// Block syntax, on the first line or on a line that would start a block
// inside a paragraph, and whitespace stay as typed.
TEST(InlineMarkdown, BlockSyntaxAndWhitespaceStayAsTyped) {
  for (const char* text : {"# Heading",
                           "## two",
                           "- a",
                           "* a",
                           "+ a",
                           "> quoted",
                           "1. first",
                           "2) second",
                           "---",
                           "***",
                           "```",
                           "~~~",
                           "    indented code",
                           "\tTabbed",
                           "trailing  ",
                           "[ref]: https://example.org",
                           "Title\n=====",
                           "<div>",
                           "a\n\n\nb",
                           "\n",
                           "",
                           "line one\r\nline two\rthree",
                           "  # spaced heading  ",
                           "text\n# heading",
                           "text\n- item",
                           "text\n> quote",
                           "text\n1. first",
                           "text\n```",
                           "text\n~~~",
                           "text\n---",
                           "text\n***",
                           "text\n<div>",
                           "a\n+ b\n2) c"}) {
    const auto parsed = AttributedString::fromInlineMarkdown(text);
    EXPECT_EQ(parsed.plainText(), text) << text;
    for (const auto& run : parsed.runs()) {
      EXPECT_FALSE(run.bold || run.italic || run.strikethrough || run.code || run.link) << text;
    }
  }
  // Such a line opens a paragraph of its own, so emphasis stops short of it.
  EXPECT_EQ(runsOf("*a\n- b*"), std::vector<TextRun>{plain("*a\n- b*")});
  EXPECT_EQ(runsOf("*a\n-b*"), std::vector<TextRun>{styled("a\n-b", false, true)});
}

TEST(InlineMarkdown, InlineSyntaxSpansLineBreaksWithinAParagraph) {
  EXPECT_EQ(runsOf("first **line**\nsecond\n- third *item*"),
            (std::vector<TextRun>{plain("first "), styled("line", true, false), plain("\nsecond\n- third "),
                                  styled("item", false, true)}));
  EXPECT_EQ(AttributedString::fromInlineMarkdown("one\ntwo\nthree").plainText(), "one\ntwo\nthree");
  EXPECT_EQ(runsOf("*a\nb*"), std::vector<TextRun>{styled("a\nb", false, true)});
  EXPECT_EQ(runsOf("**a  \r\n  b** c"), (std::vector<TextRun>{styled("a  \r\n  b", true, false), plain(" c")}));
  TextRun link = plain("two\nlines");
  link.link = "https://example.org";
  EXPECT_EQ(runsOf("[two\nlines](https://example.org)"), std::vector<TextRun>{link});
  TextRun code = plain("a b");  // a code span's line break is a space, as inline Markdown has it
  code.code = true;
  EXPECT_EQ(runsOf("`a\nb`"), std::vector<TextRun>{code});
  // A blank line ends the paragraph: emphasis does not reach across it.
  EXPECT_EQ(runsOf("*a\n\nb*"), std::vector<TextRun>{plain("*a\n\nb*")});
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
}

}  // namespace
}  // namespace quillan::platform
