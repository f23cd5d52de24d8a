#include <gtest/gtest.h>

#include "EventLog.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "host/Scheduler.hpp"
#include "platform/Clock.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::host {
namespace {

using platform::Date;
using testing::at;
using testing::EventLog;
using testing::local;
using Strings = std::vector<std::string>;

// The bundle's own providers, asked as a worker would: the extension's clock
// pinned to the instant of the ask.
TimelineOutcome askBundle(std::string_view kind, Date when) {
  platform::Clock::pin(when);
  return bundle::TimelineWidgetBundle::widget(kind)->provider(widgets::TimelineRequest::timeline, {});
}

struct Week {
  const char* zone;
  const char* placed;
  const char* end;
  // The calendar's start of each local day, from the day of placement to the
  // day after the end.
  std::vector<const char*> dayStarts;
};

// Weeks holding days of 23 and 25 hours, days whose midnight does not exist
// (they start at 01:00), and days whose midnight occurs twice (the day starts
// at the first).
const Week kWeeks[] = {
    {"Europe/Berlin",
     "2026-03-26T15:00:00+01:00",
     "2026-04-01T12:00:00+02:00",
     {"2026-03-26T00:00:00+01:00", "2026-03-27T00:00:00+01:00", "2026-03-28T00:00:00+01:00",
      "2026-03-29T00:00:00+01:00", "2026-03-30T00:00:00+02:00", "2026-03-31T00:00:00+02:00",
      "2026-04-01T00:00:00+02:00", "2026-04-02T00:00:00+02:00"}},
    {"Europe/Berlin",
     "2026-10-22T09:00:00+02:00",
     "2026-10-28T23:59:59+01:00",
     {"2026-10-22T00:00:00+02:00", "2026-10-23T00:00:00+02:00", "2026-10-24T00:00:00+02:00",
      "2026-10-25T00:00:00+02:00", "2026-10-26T00:00:00+01:00", "2026-10-27T00:00:00+01:00",
      "2026-10-28T00:00:00+01:00", "2026-10-29T00:00:00+01:00"}},
    {"America/Havana",
     "2026-03-05T12:00:00-05:00",
     "2026-03-11T12:00:00-04:00",
     {"2026-03-05T00:00:00-05:00", "2026-03-06T00:00:00-05:00", "2026-03-07T00:00:00-05:00",
      "2026-03-08T01:00:00-04:00", "2026-03-09T00:00:00-04:00", "2026-03-10T00:00:00-04:00",
      "2026-03-11T00:00:00-04:00", "2026-03-12T00:00:00-04:00"}},
    {"America/Santiago",
     "2026-09-03T12:00:00-04:00",
     "2026-09-09T12:00:00-03:00",
     {"2026-09-03T00:00:00-04:00", "2026-09-04T00:00:00-04:00", "2026-09-05T00:00:00-04:00",
      "2026-09-06T01:00:00-03:00", "2026-09-07T00:00:00-03:00", "2026-09-08T00:00:00-03:00",
      "2026-09-09T00:00:00-03:00", "2026-09-10T00:00:00-03:00"}},
    // 00:00-00:59 on 2026-11-01 happens twice; the second midnight is 01:00
    // into the day and asks nothing.
    {"America/Havana",
     "2026-10-29T12:00:00-04:00",
     "2026-11-04T12:00:00-05:00",
     {"2026-10-29T00:00:00-04:00", "2026-10-30T00:00:00-04:00", "2026-10-31T00:00:00-04:00",
      "2026-11-01T00:00:00-04:00", "2026-11-02T00:00:00-05:00", "2026-11-03T00:00:00-05:00",
      "2026-11-04T00:00:00-05:00", "2026-11-05T00:00:00-05:00"}},
    // 23:00-23:59 on 2026-04-04 happens twice, ending a 25-hour day.
    {"America/Santiago",
     "2026-04-01T12:00:00-03:00",
     "2026-04-07T12:00:00-04:00",
     {"2026-04-01T00:00:00-03:00", "2026-04-02T00:00:00-03:00", "2026-04-03T00:00:00-03:00",
      "2026-04-04T00:00:00-03:00", "2026-04-05T00:00:00-04:00", "2026-04-06T00:00:00-04:00",
      "2026-04-07T00:00:00-04:00", "2026-04-08T00:00:00-04:00"}},
};

// What one widget of the bundle does over a week: placed, then one reload at
// each local start of day, each answered with that day's entry, and nothing
// else.
Strings expectedWeek(const Week& week, const std::string& kind) {
  Strings lines;
  const auto& days = week.dayStarts;
  for (std::size_t day = 0; day + 1 < days.size(); ++day) {
    const std::string when = day == 0 ? week.placed : days[day];
    const std::string prefix = local(at(when)) + " " + kind + " ";
    lines.push_back(prefix + (day == 0 ? "reload placed" : "reload policy"));
    lines.push_back(prefix + "timeline " + days[day] + " after " + days[day + 1]);
    lines.push_back(prefix + "entry " + days[day]);
  }
  return lines;
}

std::vector<std::string> bundleKinds() {
  std::vector<std::string> kinds;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) kinds.push_back(widget.kind);
  return kinds;
}

TEST(BundleSchedule, EveryWidgetReloadsOnceAtEachLocalStartOfDay) {
  for (const auto& week : kWeeks) {
    quillan::testing::ProcessEnvironment environment(week.placed, week.zone);
    EventLog log;
    Scheduler scheduler(at(week.placed), askBundle, log.listener());
    for (const auto& kind : bundleKinds()) scheduler.place(kind);
    scheduler.advanceTo(at(week.end));

    for (const auto& kind : bundleKinds()) {
      EXPECT_EQ(log.lines(kind), expectedWeek(week, kind)) << week.zone << " from " << week.placed;
      const auto state = *scheduler.widget(kind);
      EXPECT_EQ(state.reloads.policy, 1) << "one charged reload in the last 24 h";
      EXPECT_EQ(local(*state.nextReload), week.dayStarts.back());
    }
    EXPECT_EQ(log.events.size(), bundleKinds().size() * 3 * (week.dayStarts.size() - 1));
  }
}

}  // namespace
}  // namespace quillan::host
