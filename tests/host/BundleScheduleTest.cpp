#include <gtest/gtest.h>

#include <algorithm>

#include "EventLog.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "host/Scheduler.hpp"
#include "platform/Clock.hpp"
#include "support/GoldenFile.hpp"
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
};

// Weeks holding days of 23 and 25 hours, days whose midnight does not exist
// (they start at 01:00), and days whose midnight occurs twice (the day starts
// at the first): in Havana 00:00-00:59 on 2026-11-01 happens twice, and the
// second midnight asks nothing; in Santiago 23:00-23:59 on 2026-04-04 happens
// twice, ending a 25-hour day.
const Week kWeeks[] = {
    {"Europe/Berlin", "2026-03-26T15:00:00+01:00", "2026-04-01T12:00:00+02:00"},
    {"Europe/Berlin", "2026-10-22T09:00:00+02:00", "2026-10-28T23:59:59+01:00"},
    {"America/Havana", "2026-03-05T12:00:00-05:00", "2026-03-11T12:00:00-04:00"},
    {"America/Santiago", "2026-09-03T12:00:00-04:00", "2026-09-09T12:00:00-03:00"},
    {"America/Havana", "2026-10-29T12:00:00-04:00", "2026-11-04T12:00:00-05:00"},
    {"America/Santiago", "2026-04-01T12:00:00-03:00", "2026-04-07T12:00:00-04:00"},
};

// Every widget of the bundle does the same over a week: placed, then one
// reload at each local start of day, each answered with that day's entry, and
// nothing else. The golden file holds what one widget (named W) does.
TEST(BundleSchedule, EveryWidgetReloadsOnceAtEachLocalStartOfDay) {
  std::string weeks;
  for (const auto& week : kWeeks) {
    quillan::testing::ProcessEnvironment environment(week.placed, week.zone);
    EventLog log;
    Scheduler scheduler(at(week.placed), askBundle, log.listener());
    Strings kinds;
    for (const auto& widget : bundle::TimelineWidgetBundle::body()) kinds.push_back(widget.kind);
    for (const auto& kind : kinds) scheduler.place(kind);
    scheduler.advanceTo(at(week.end));

    std::vector<Strings> perKind;
    for (const auto& kind : kinds) {
      Strings lines;
      for (auto line : log.lines(kind))
        lines.push_back(line.replace(line.find(" " + kind + " "), kind.size() + 2, " W "));
      const auto state = *scheduler.widget(kind);
      lines.push_back("charged in the last 24 h: " + std::to_string(state.reloads.policy) + ", next reload " +
                      local(*state.nextReload));
      perKind.push_back(lines);
    }
    EXPECT_EQ(std::count(perKind.begin(), perKind.end(), perKind.front()), static_cast<long>(kinds.size()));
    EXPECT_EQ(log.events.size(), kinds.size() * (perKind.front().size() - 1));
    weeks += std::string(week.zone) + " from " + week.placed + "\n";
    for (const auto& line : perKind.front()) weeks += "  " + line + "\n";
  }
  quillan::testing::expectGoldenText(weeks, "bundle_schedule.txt");
}

}  // namespace
}  // namespace quillan::host
