#include <gtest/gtest.h>

#include "platform/Utf8.hpp"

namespace quillan::platform {
namespace {

TEST(Utf8, MalformedSequencesBecomeOneReplacementCharacterPerMaximalSubpart) {
  struct Case {
    std::string text;
    std::string replaced;
  };
  const Case cases[] = {
      {"plain", "plain"},
      {"Grüße 日本 🎉", "Grüße 日本 🎉"},
      // The Unicode standard's own example: a truncated four- and three-byte
      // sequence, a lead without its tail, stray continuation bytes.
      {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64", "a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
      {"\xC0\xAF", "\uFFFD\uFFFD"},                      // overlong
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // surrogate
      {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // past U+10FFFF
      {"end\xE2\x82", "end\uFFFD"},                      // cut short at the end
      {"\xFF", "\uFFFD"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(withReplacementCharacters(c.text), c.replaced) << c.text;
    EXPECT_EQ(isValidUtf8(c.text), c.text == c.replaced) << c.text;
    EXPECT_TRUE(isValidUtf8(withReplacementCharacters(c.text))) << c.text;
  }
}

TEST(Utf8, BoundaryAtOrBeforeNeverSplitsASequence) {
  const std::string text = "a\u00e9\u65e5\U0001F389";  // 1, 2, 3 and 4 bytes
  const std::size_t expected[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10, 10};
  for (std::size_t offset = 0; offset < std::size(expected); ++offset) {
    EXPECT_EQ(codePointBoundaryAtOrBefore(text, offset), expected[offset]) << offset;
  }
  EXPECT_EQ(codePointBoundaryAtOrBefore(text, std::string::npos), text.size());
  // Malformed bytes are boundaries of their own: nothing well-formed spans them.
  EXPECT_EQ(codePointBoundaryAtOrBefore("\x80\x80\x80\x80", 2), 2u);
  EXPECT_EQ(codePointBoundaryAtOrBefore("\xE2\x82x", 2), 2u);
}

}  // namespace
}  // namespace quillan::platform
