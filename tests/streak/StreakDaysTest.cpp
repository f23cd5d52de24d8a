#include <gtest/gtest.h>

#include "streak/StreakDays.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::streak {
namespace {

using quillan::testing::ProcessEnvironment;

struct MomentCase {
  const char* zone;
  const char* now;
  std::int64_t offset;
  const char* wallTime;  // local; a repeated wall time may be either occurrence
};

// The time of day is kept across 23- and 25-hour days; a wall time that does
// not exist on the target day (a jump at midnight) moves forward but stays on
// that day.
constexpr MomentCase kMoments[] = {
    {"Europe/Berlin", "2026-11-22T15:30:00+01:00", -1, "2026-11-21T15:30:00"},
    {"Europe/Berlin", "2026-11-22T00:01:00+01:00", -1, "2026-11-21T00:01:00"},
    {"Europe/Berlin", "2026-11-22T23:59:00+01:00", -4, "2026-11-18T23:59:00"},
    {"Europe/Berlin", "2026-03-30T12:00:00+02:00", -1, "2026-03-29T12:00:00"},
    {"Europe/Berlin", "2026-03-30T12:00:00+02:00", -2, "2026-03-28T12:00:00"},
    {"Europe/Berlin", "2026-03-30T02:30:00+02:00", -1, "2026-03-29T03:30:00"},
    {"Europe/Berlin", "2026-10-26T12:00:00+01:00", -1, "2026-10-25T12:00:00"},
    {"Europe/Berlin", "2026-10-26T02:30:00+01:00", -1, "2026-10-25T02:30:00"},
    {"America/Havana", "2026-03-12T00:30:00-04:00", -4, "2026-03-08T01:30:00"},
    {"America/Havana", "2026-03-09T00:00:00-04:00", -1, "2026-03-08T01:00:00"},
    {"America/Havana", "2026-03-09T00:00:00-04:00", -2, "2026-03-07T00:00:00"},
    {"America/Havana", "2026-11-03T00:30:00-05:00", -2, "2026-11-01T00:30:00"},
    {"America/Santiago", "2026-09-09T00:15:00-03:00", -3, "2026-09-06T01:15:00"},
    {"America/Santiago", "2026-09-07T23:59:00-03:00", -2, "2026-09-05T23:59:00"},
    {"America/Los_Angeles", "2026-11-22T21:00:00-08:00", -1, "2026-11-21T21:00:00"},
    {"Pacific/Kiritimati", "2026-11-22T00:30:00+14:00", -4, "2026-11-18T00:30:00"},
};

TEST(DayMoment, MovesByCalendarDaysKeepingTheTimeOfDay) {
  for (const auto& c : kMoments) {
    ProcessEnvironment environment(c.now, c.zone);
    const auto local = ProcessEnvironment::local(dayMoment(c.offset));
    EXPECT_EQ(local.substr(0, 19), c.wallTime) << c.zone << " " << c.now << " " << c.offset << ": " << local;
  }
}

TEST(DayMoment, ReadsTheClockAtEachCall) {
  ProcessEnvironment environment("2026-11-22T10:00:00+01:00", "Europe/Berlin");
  const auto first = dayMoment(-1);
  ProcessEnvironment::setNow("2026-11-23T10:00:00+01:00");
  EXPECT_EQ(ProcessEnvironment::local(dayMoment(-1)), "2026-11-22T10:00:00+01:00");
  EXPECT_EQ(ProcessEnvironment::local(first), "2026-11-21T10:00:00+01:00");
}

TEST(DayMomentDeathTest, ACalendarThatCannotAddTheDaysStops) {
  ProcessEnvironment environment("2026-11-22T10:00:00+01:00", "Europe/Berlin");
  EXPECT_DEATH(dayMoment(std::int64_t{1} << 40),
               "OnThisDayWidgetExtension/StreakMediumView: Fatal error: Unexpectedly found nil");
}

}  // namespace
}  // namespace quillan::streak
