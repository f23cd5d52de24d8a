#include <gtest/gtest.h>

#include "StreakTree.hpp"
#include "streak/StreakCircle.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::streak {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using testing::readCircle;

TEST(StreakCircle, LinksToItsLocalDayAndShowsTheWeekdayAndUnpaddedDay) {
  quillan::testing::expectGoldenAnswers("streak_circle_labels.txt", [](const std::string& question) {
    const auto args = quillan::testing::words(question);
    ProcessEnvironment environment("2026-11-22T12:00:00+01:00", args[0], args[1]);
    const Environment environmentValues{.platformVersion = {}, .family = WidgetFamily::systemMedium};
    const auto drawn =
        readCircle(StreakCircle(environmentValues, *platform::ISO8601::parse(args[2]), false).body(environmentValues));
    return drawn.link + " " + drawn.weekday + " " + drawn.dayOfMonth;
  });
}

}  // namespace
}  // namespace quillan::streak
