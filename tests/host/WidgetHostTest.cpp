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

TEST_F(WidgetHostTest, SettingTheClockLivesThroughTwoDaysAheadAndJumpsOtherwise) {
  const struct {
    const char* name;
    double secondsAhead;
    Strings reloads;
  } cases[] = {
      {"just under 48 h ahead", 48 * kHour - 1, {"policy"}},
      {"exactly 48 h ahead", 48 * kHour, {"policy", "policy"}},
      {"just over 48 h ahead", 48 * kHour + 1, {"time-change"}},
      {"a minute back", -60, {"time-change"}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    auto source = daily();
    EventLog log;
    WidgetHost host(kStart, source.source(), log.listener());
    host.place("w");
    log.events.clear();

    const auto target = kStart.addingTimeInterval(test.secondsAhead);
    host.setClock(target);
    EXPECT_EQ(reloadReasons(log), test.reloads);
    EXPECT_EQ(host.now(), target);
  }
}

// Time that passes is always lived through, however far; only going back is a
// time change.
TEST_F(WidgetHostTest, TimePassingIsLivedThroughAndEveryOtherInputAsksEveryWidgetFree) {
  const struct {
    const char* name;
    std::function<void(WidgetHost&)> input;
    Strings reloads;
  } cases[] = {
      {"a week passing", [](WidgetHost& host) { host.advanceTo(kStart.addingTimeInterval(7 * 24 * kHour)); },
       Strings(7 * 2, "policy")},
      {"time going back",
       [](WidgetHost& host) { host.advanceTo(kStart.addingTimeInterval(-kHour)); },
       {"time-change", "time-change"}},
      {"the environment changing", [](WidgetHost& host) { host.environmentChanged(); }, {"environment", "environment"}},
      {"the app writing its journal", [](WidgetHost& host) { host.appWroteJournal(); }, {"app", "app"}},
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
  }
}

}  // namespace
}  // namespace quillan::host
