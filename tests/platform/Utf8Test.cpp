#include <gtest/gtest.h>

#include "platform/GraphemeBoundary.hpp"
#include "platform/Utf8.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::platform {
namespace {

using quillan::testing::cells;
using quillan::testing::unescaped;

// Malformed sequences become one replacement character per maximal subpart;
// a cut moves back to a code point's or a grapheme cluster's start.
TEST(Utf8, RepairsAndCutsAsTheGoldenFileSays) {
  quillan::testing::expectGoldenAnswers("utf8_text.txt", [](const std::string& question) {
    const auto split = cells(question);
    const auto text = unescaped(split[1]);
    if (split[0] == "replace") {
      const auto replaced = withReplacementCharacters(text);
      EXPECT_TRUE(isValidUtf8(replaced)) << question;
      return replaced + (isValidUtf8(text) == (text == replaced) ? "" : " (validity disagrees)");
    }
    const auto offset = split[2] == "npos" ? std::string::npos : std::stoul(split[2]);
    const auto boundary = split[0] == "code point" ? codePointBoundaryAtOrBefore(text, offset)
                                                   : graphemeBoundaryAtOrBefore(text, offset);
    return std::to_string(boundary);
  });
}

}  // namespace
}  // namespace quillan::platform
