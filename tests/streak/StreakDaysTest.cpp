#include <gtest/gtest.h>

#include "streak/StreakDays.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::streak {
namespace {

using quillan::testing::ProcessEnvironment;

TEST(DayMoment, MovesByCalendarDaysKeepingTheTimeOfDay) {
  quillan::testing::expectGoldenAnswers("day_moment.txt", [](const std::string& question) {
    const auto args = quillan::testing::words(question);
    ProcessEnvironment environment(args[1], args[0]);
    return ProcessEnvironment::local(dayMoment(std::stoll(args[2]))).substr(0, 19);
  });
}

TEST(DayMomentDeathTest, ACalendarThatCannotAddTheDaysStops) {
  ProcessEnvironment environment("2026-11-22T10:00:00+01:00", "Europe/Berlin");
  EXPECT_DEATH(dayMoment(std::int64_t{1} << 40),
               "OnThisDayWidgetExtension/StreakMediumView: Fatal error: Unexpectedly found nil");
}

}  // namespace
}  // namespace quillan::streak
