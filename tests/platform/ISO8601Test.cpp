#include <gtest/gtest.h>

#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::platform {
namespace {

// TEXT => the instant it names; TEXT | OFFSET => that instant written at the
// offset, and whether that reads back.
TEST(ISO8601, ParsesAndFormatsAsTheGoldenFileSays) {
  quillan::testing::expectGoldenAnswers("iso8601_parse.txt", [](const std::string& question) {
    const auto split = quillan::testing::cells(question);
    const auto date = ISO8601::parse(split[0]);
    if (!date || split.size() == 1) return date ? std::to_string(date->unixSeconds()) : std::string("rejected");
    const auto text = ISO8601::format(*date, std::stoi(split[1]));
    return text + (ISO8601::parse(text) == date ? "" : " (not read back)");
  });
  EXPECT_FALSE(ISO8601::parse(""));
  EXPECT_DOUBLE_EQ(ISO8601::parse("2001-01-01T00:00:00Z")->unixSeconds(), kReferenceDateUnixOffset);
}

}  // namespace
}  // namespace quillan::platform
