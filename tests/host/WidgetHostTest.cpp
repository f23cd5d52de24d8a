#include <gtest/gtest.h>

#include <functional>

#include "EventLog.hpp"
#include "host/WidgetHost.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::host {
namespace {

using platform::Date;
using testing::at;
using testing::EventLog;
using testing::FakeSource;
using widgets::TimelineAnswer;
using widgets::TimelineReloadPolicy;
using Strings = std::vector<std::string>;

constexpr double kHour = 3600;
const Date kStart = at("2026-05-04T10:00:00Z");

// One entry at the ask, asking again a day later: living through two days
// shows as daily policy reloads, a significant time change as one free ask.
FakeSource daily() {
  return FakeSource{[](std::string_view, Date when) -> TimelineOutcome {
    return TimelineAnswer{{when}, TimelineReloadPolicy::after(when.addingTimeInterval(24 * kHour))};
  }};
}

std::vector<std::string> reloadReasons(const EventLog& log) {
  std::vector<std::string> reasons;
  for (const auto& event : log.events) {
    if (const auto* reload = std::get_if<ReloadStarted>(&event.detail)) {
      reasons.emplace_back(reloadReasonName(reload->reason));
    }
  }
  return reasons;
}

class WidgetHostTest : public ::testing::Test {
 protected:
  quillan::testing::ProcessEnvironment environment{"2026-05-04T00:00:00Z", "UTC"};
};

Date after(double seconds) { return kStart.addingTimeInterval(seconds); }

// Setting the clock lives through at most two days ahead and jumps otherwise;
// time that passes is always lived through, however far, and only going back
// is a time change. Every other input asks every widget free.
TEST_F(WidgetHostTest, EachInputReloadsTwoWidgetsForItsReason) {
  const struct {
    const char* name;
    std::function<void(WidgetHost&)> input;
    Date now;
    Strings reloads;
  } cases[] = {
      {"the clock set just under 48 h ahead", [](WidgetHost& host) { host.setClock(after(48 * kHour - 1)); },
       after(48 * kHour - 1), Strings(2, "policy")},
      {"the clock set exactly 48 h ahead", [](WidgetHost& host) { host.setClock(after(48 * kHour)); },
       after(48 * kHour), Strings(4, "policy")},
      {"the clock set just over 48 h ahead", [](WidgetHost& host) { host.setClock(after(48 * kHour + 1)); },
       after(48 * kHour + 1), Strings(2, "time-change")},
      {"the clock set a minute back", [](WidgetHost& host) { host.setClock(after(-60)); }, after(-60),
       Strings(2, "time-change")},
      {"a week passing", [](WidgetHost& host) { host.advanceTo(after(7 * 24 * kHour)); }, after(7 * 24 * kHour),
       Strings(7 * 2, "policy")},
      {"time going back", [](WidgetHost& host) { host.advanceTo(after(-kHour)); }, after(-kHour),
       Strings(2, "time-change")},
      {"the environment changing", [](WidgetHost& host) { host.environmentChanged(); }, kStart,
       Strings(2, "environment")},
      {"the app writing its journal", [](WidgetHost& host) { host.appWroteJournal(); }, kStart, Strings(2, "app")},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    auto source = daily();
    EventLog log;
    WidgetHost host(kStart, source.source(), log.listener());
    host.place("a");
    host.place("b");
    log.events.clear();
    test.input(host);
    EXPECT_EQ(reloadReasons(log), test.reloads);
    EXPECT_EQ(host.now(), test.now);
  }
}

}  // namespace
}  // namespace quillan::host
