#include <gtest/gtest.h>

#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

TEST(ISO8601, ParsesOffsetsZuluAndFractionsAndRejectsMalformedDates) {
  quillan::testing::expectGoldenAnswers("iso8601_parse.txt", [](const std::string& text) {
    const auto date = ISO8601::parse(text);
    return date ? std::to_string(date->unixSeconds()) : std::string("rejected");
  });
  EXPECT_FALSE(ISO8601::parse(""));
  EXPECT_DOUBLE_EQ(ISO8601::parse("2001-01-01T00:00:00Z")->unixSeconds(), kReferenceDateUnixOffset);
}

TEST(ISO8601, FormatsWithOffsetAndOnlyNeededMilliseconds) {
  const auto date = *ISO8601::parse("2026-11-21T23:00:00Z");
  EXPECT_EQ(ISO8601::format(date, 3600), "2026-11-22T00:00:00+01:00");
  EXPECT_EQ(ISO8601::format(date, -3 * 3600 - 1800), "2026-11-21T19:30:00-03:30");
  EXPECT_EQ(ISO8601::format(date, 0), "2026-11-21T23:00:00+00:00");
  EXPECT_EQ(ISO8601::format(date.addingTimeInterval(0.5), 0), "2026-11-21T23:00:00.500+00:00");
  EXPECT_EQ(ISO8601::format(Date::fromReferenceSeconds(-0.25), 0), "2000-12-31T23:59:59.750+00:00");
}

TEST(ISO8601, YearsBeyondFourDigitsTakeTheExpandedForm) {
  const auto yearZero = *ISO8601::parse("0000-01-01T00:00:00Z");
  EXPECT_EQ(ISO8601::format(yearZero, 0), "0000-01-01T00:00:00+00:00");
  EXPECT_EQ(ISO8601::format(yearZero, -9 * 3600 - 1800), "-0001-12-31T14:30:00-09:30");
  EXPECT_FALSE(ISO8601::parse(ISO8601::format(yearZero, -3600)));
  const auto lastDay = *ISO8601::parse("9999-12-31T23:00:00Z");
  EXPECT_EQ(ISO8601::format(lastDay, 14 * 3600), "+10000-01-01T13:00:00+14:00");
}

}  // namespace
}  // namespace quillan::platform
