#include <gtest/gtest.h>

#include "StreakTree.hpp"
#include "streak/StreakCircle.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::streak {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using testing::readCircle;

Environment environmentIn(ColorScheme scheme) {
  Environment environment;
  environment.colorScheme = scheme;
  environment.family = WidgetFamily::systemMedium;
  return environment;
}

platform::Date at(const char* iso) { return *platform::ISO8601::parse(iso); }

Node pastCircle(ColorScheme scheme, const char* date, bool hasNotes) {
  const auto environment = environmentIn(scheme);
  return StreakCircle(environment, at(date), hasNotes).body(environment);
}

struct LabelCase {
  const char* zone;
  const char* locale;
  const char* date;
  const char* link;
  const char* weekday;
  const char* day;
};

// The link's day is zero-padded and the label's is not; both are the local
// calendar day, which late in the evening west of UTC is not the UTC one.
constexpr LabelCase kLabels[] = {
    {"Europe/Berlin", "en_US", "2026-03-05T12:00:00+01:00", "widget-deeplink-addrecord://RecordDate/2026-03-05", "Thu",
     "5"},
    {"Europe/Berlin", "de_DE", "2026-11-16T00:00:00+01:00", "widget-deeplink-addrecord://RecordDate/2026-11-16", "Mo.",
     "16"},
    {"America/Los_Angeles", "en_US", "2026-03-01T23:30:00-08:00", "widget-deeplink-addrecord://RecordDate/2026-03-01",
     "Sun", "1"},
    {"America/Havana", "en_US", "2026-03-08T01:00:00-04:00", "widget-deeplink-addrecord://RecordDate/2026-03-08", "Sun",
     "8"},
};

TEST(StreakCircle, LinksToItsLocalDayAndShowsTheWeekdayAndUnpaddedDay) {
  for (const auto& c : kLabels) {
    ProcessEnvironment environment("2026-11-22T12:00:00+01:00", c.zone, c.locale);
    const auto drawn = readCircle(pastCircle(ColorScheme::light, c.date, false));
    EXPECT_EQ(drawn.link, c.link) << c.zone << " " << c.date;
    EXPECT_EQ(drawn.weekday, c.weekday) << c.zone << " " << c.date;
    EXPECT_EQ(drawn.dayOfMonth, c.day) << c.zone << " " << c.date;
  }
}

}  // namespace
}  // namespace quillan::streak
