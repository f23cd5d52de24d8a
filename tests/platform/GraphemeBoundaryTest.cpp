#include <gtest/gtest.h>

#include <string>

#include "platform/GraphemeBoundary.hpp"

namespace quillan::platform {
namespace {

TEST(GraphemeBoundary, ACutNeverPartsACluster) {
  struct Case {
    const char* name;
    std::string text;
    std::size_t offset;
    std::size_t boundary;
  };
  const std::string flags = "a\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7";  // a, then two flags of 8 bytes
  const Case cases[] = {
      {"between letters", "abc", 2, 2},
      {"between a letter and its accent", "ae\u0301x", 2, 1},
      {"inside the accent's bytes", "ae\u0301x", 3, 1},
      {"after the accent", "ae\u0301x", 4, 4},
      {"inside the first flag", flags, 5, 1},
      {"between the flags", flags, 9, 9},
      {"inside the second flag", flags, 13, 9},
      {"between an emoji and its skin tone", "a\U0001F44D\U0001F3FD", 5, 1},
      {"inside a family joined by ZWJ", "a\U0001F468\u200D\U0001F469\u200D\U0001F467", 8, 1},
      {"at the end", "ae\u0301", 4, 4},
      {"past the end", "ae\u0301", 100, 4},
      {"at the start", "abc", 0, 0},
      // Nothing before the offset ends a cluster: a character boundary must do.
      {"one long cluster", "e\u0301\u0301\u0301", 3, 3},
  };
  for (const auto& c : cases) EXPECT_EQ(graphemeBoundaryAtOrBefore(c.text, c.offset), c.boundary) << c.name;
}

}  // namespace
}  // namespace quillan::platform
