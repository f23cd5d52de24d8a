#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>

#include "EventLog.hpp"
#include "host/Scheduler.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::host {
namespace {

using platform::Date;
using testing::at;
using testing::EventLog;
using testing::FakeSource;
using testing::local;
using widgets::TimelineAnswer;
using widgets::TimelineReloadPolicy;
using Strings = std::vector<std::string>;

// Times in these tests are UTC on 2026-05-04 unless a date is given.
Date utc(const std::string& time) { return at(time.size() == 8 ? "2026-05-04T" + time + "Z" : time + "Z"); }

TimelineOutcome timeline(std::vector<Date> entries, std::optional<TimelineReloadPolicy> policy) {
  return TimelineAnswer{std::move(entries), policy};
}

// An answer that is used up as soon as it is given: one entry now, atEnd, so
// the widget asks every minimum interval and meets its budget within a day.
TimelineOutcome usedUpAtOnce(std::string_view, Date when) { return timeline({when}, TimelineReloadPolicy::atEnd()); }

void expectGoldenLines(const Strings& lines, const std::string& name) {
  std::string text;
  for (const auto& line : lines) text += line + "\n";
  quillan::testing::expectGoldenText(text, name);
}

class SchedulerTest : public ::testing::Test {
 protected:
  quillan::testing::ProcessEnvironment environment{"2026-05-04T00:00:00Z", "UTC"};
  EventLog log;
};

TEST_F(SchedulerTest, EntriesSwapAtTheirDatesWithoutAsking) {
  FakeSource fake{[](std::string_view, Date) {
    return timeline({utc("11:00:00"), utc("09:00:00"), utc("12:00:00"), utc("12:00:00")},
                    TimelineReloadPolicy::never());
  }};
  Scheduler scheduler(utc("10:00:00"), fake.source(), log.listener());
  scheduler.place("w");
  EXPECT_EQ(scheduler.widget("w")->entry, utc("09:00:00"));
  EXPECT_EQ(scheduler.nextEventTime(), utc("11:00:00"));

  scheduler.advanceTo(utc("2026-05-05T00:00:00"));
  expectGoldenLines(log.lines(), "scheduler_entries_swap.txt");
  EXPECT_EQ(fake.asks.size(), 1u);
  const auto state = *scheduler.widget("w");
  EXPECT_EQ(state.entry, utc("12:00:00"));
  EXPECT_EQ(state.entryDates, (std::vector{utc("09:00:00"), utc("11:00:00"), utc("12:00:00")}));
  EXPECT_EQ(state.version, 3u);
  EXPECT_FALSE(state.nextReload);
  EXPECT_FALSE(scheduler.nextEventTime());
  EXPECT_EQ(scheduler.now(), utc("2026-05-05T00:00:00"));
}

TEST_F(SchedulerTest, BeforeAnyEntryArrivesTheWidgetKeepsWhatItShowed) {
  int asks = 0;
  FakeSource fake{[&asks](std::string_view, Date) {
    return ++asks == 1 ? timeline({utc("10:30:00")}, TimelineReloadPolicy::never())
                       : timeline({utc("13:00:00")}, TimelineReloadPolicy::never());
  }};
  Scheduler scheduler(utc("10:00:00"), fake.source(), log.listener());
  scheduler.place("w");
  EXPECT_FALSE(scheduler.widget("w")->entry) << "nothing current yet: the placeholder";
  EXPECT_EQ(scheduler.widget("w")->version, 0u);

  scheduler.advanceTo(utc("10:30:00"));
  EXPECT_EQ(scheduler.widget("w")->entry, utc("10:30:00"));

  scheduler.reloadAll(utc("11:00:00"));
  EXPECT_EQ(scheduler.widget("w")->entry, utc("10:30:00")) << "a timeline that lies ahead never blanks the widget";
  EXPECT_EQ(log.linesOfType(EventType::entry).size(), 1u);

  scheduler.advanceTo(utc("13:00:00"));
  EXPECT_EQ(scheduler.widget("w")->entry, utc("13:00:00"));
}

// "ENTRIES ; POLICY", times of 2026-05-04 UTC: the timeline a widget placed at 10:00 is given.
TimelineOutcome timelineOf(const std::string& question) {
  const auto split = question.find(';');
  std::vector<Date> entries;
  for (const auto& time : quillan::testing::words(question.substr(0, split))) entries.push_back(utc(time));
  const auto policy = quillan::testing::words(question.substr(split + 1));
  if (policy[0] == "after") return timeline(entries, TimelineReloadPolicy::after(utc(policy[1])));
  if (policy[0] == "none") return timeline(entries, std::nullopt);
  return timeline(entries, policy[0] == "never" ? TimelineReloadPolicy::never() : TimelineReloadPolicy::atEnd());
}

TEST_F(SchedulerTest, EachPolicyComesDueWhereItSaysButNeverAtOnce) {
  quillan::testing::expectGoldenAnswers("scheduler_policies.txt", [](const std::string& question) {
    FakeSource fake{[&](std::string_view, Date) { return timelineOf(question); }};
    Scheduler scheduler(utc("10:00:00"), fake.source());
    scheduler.place("w");
    const auto state = *scheduler.widget("w");
    scheduler.advanceTo(utc("13:00:00"));
    const auto asks = fake.askTimes();
    std::string firstAsks;
    for (std::size_t ask = 0; ask < std::min<std::size_t>(2, asks.size()); ++ask)
      firstAsks += asks[ask].substr(11, 8) + " ";
    return (state.policy ? testing::policyText(*state.policy) : "no policy") + ", due " +
           (state.nextReload ? local(*state.nextReload) : "never") + ", asked at " + firstAsks + "(" +
           std::to_string(asks.size()) + " asks)";
  });
}

TEST_F(SchedulerTest, AtEndAsksWhenTheLastEntryIsShown) {
  FakeSource fake{[](std::string_view, Date when) {
    return timeline({when, when.addingTimeInterval(3600)}, TimelineReloadPolicy::atEnd());
  }};
  Scheduler scheduler(utc("10:00:00"), fake.source(), log.listener());
  scheduler.place("w");
  scheduler.advanceTo(utc("11:30:00"));
  expectGoldenLines(log.lines(), "scheduler_at_end.txt");
}

TEST_F(SchedulerTest, OverBudgetAPolicyReloadWaitsUntilTheWindowFreesASlot) {
  FakeSource fake{usedUpAtOnce};
  Scheduler scheduler(utc("00:00:00"), fake.source(), log.listener());
  scheduler.place("w");
  scheduler.advanceTo(utc("2026-05-05T00:00:00"));

  // Placed free at 00:00, then charged every 5 minutes: the 70th at 05:50,
  // and the 71st, due at 05:55, waits for the first (00:05) to leave the window.
  EXPECT_EQ(fake.asks.size(), 71u);
  EXPECT_EQ(log.linesOfType(EventType::reload).back(),
            "2026-05-04T05:55:00+00:00 w reload budget-deferred until 2026-05-05T00:05:00+00:00");
  auto state = *scheduler.widget("w");
  EXPECT_EQ(state.reloads, (ReloadCounts{.policy = 70, .app = 0, .system = 0, .budgetDeferred = 1}))
      << "the placement at 00:00 left the window at 00:00 the next day";
  EXPECT_EQ(state.staleUntil, utc("2026-05-05T00:05:00"));
  EXPECT_EQ(state.nextReload, utc("2026-05-05T00:05:00"));
  EXPECT_EQ(state.nextReloadReason, ReloadReason::policy);
  EXPECT_TRUE(state.ok());

  // From then on each reload replaces one that leaves the window.
  scheduler.advanceTo(utc("2026-05-05T00:30:00"));
  EXPECT_EQ(testing::local(fake.asks[71].second), "2026-05-05T00:05:00+00:00");
  EXPECT_EQ(fake.asks.size(), 71u + 6u);
  state = *scheduler.widget("w");
  EXPECT_FALSE(state.staleUntil);
  EXPECT_EQ(state.reloads.policy, 70);
  EXPECT_EQ(log.linesOfType(EventType::reload).size(), 1u + 70u + 1u + 6u);
}

TEST_F(SchedulerTest, AppReloadsAreNeverChargedAndWorkOverBudget) {
  FakeSource fake{usedUpAtOnce};
  Scheduler scheduler(utc("00:00:00"), fake.source(), log.listener(), {.reloadBudget = 2});
  scheduler.place("w");
  scheduler.advanceTo(utc("01:00:00"));
  ASSERT_EQ(scheduler.widget("w")->staleUntil, utc("2026-05-05T00:05:00")) << "over a budget of 2 from 00:15";

  scheduler.reloadAll(utc("02:00:00"));
  auto state = *scheduler.widget("w");
  EXPECT_EQ(fake.asks.size(), 4u);
  EXPECT_EQ(state.reloads, (ReloadCounts{.policy = 2, .app = 1, .system = 1, .budgetDeferred = 1}));
  EXPECT_FALSE(state.staleUntil) << "the app's timeline is fresh";
  EXPECT_EQ(state.nextReload, utc("02:05:00"));

  // Its own policy reload is still charged, and waits for the same slot.
  scheduler.advanceTo(utc("03:00:00"));
  state = *scheduler.widget("w");
  EXPECT_EQ(fake.asks.size(), 4u);
  EXPECT_EQ(state.staleUntil, utc("2026-05-05T00:05:00"));
  EXPECT_EQ(state.reloads.budgetDeferred, 2);

  scheduler.reloadAll(utc("03:00:00"), ReloadReason::environment);
  state = *scheduler.widget("w");
  EXPECT_EQ(fake.asks.size(), 5u);
  EXPECT_EQ(state.reloads, (ReloadCounts{.policy = 2, .app = 1, .system = 2, .budgetDeferred = 2}));
}

TEST_F(SchedulerTest, AFailedAskKeepsTheTimelineAndRetriesLaterAndLater) {
  int asks = 0;
  FakeSource fake{[&asks](std::string_view, Date when) -> TimelineOutcome {
    ++asks;
    if (asks == 1) return timeline({when, utc("12:00:00")}, TimelineReloadPolicy::never());
    if (asks < 9) return TimelineFailure{"the journal could not be read"};
    return timeline({when}, TimelineReloadPolicy::never());
  }};
  Scheduler scheduler(utc("10:00:00"), fake.source(), log.listener());
  scheduler.place("w");
  const auto versionBefore = scheduler.widget("w")->version;
  scheduler.reloadAll(utc("10:30:00"));

  auto state = *scheduler.widget("w");
  EXPECT_EQ(state.failure, "the journal could not be read");
  EXPECT_FALSE(state.ok());
  EXPECT_EQ(state.version, versionBefore + 1);
  EXPECT_EQ(state.nextReloadReason, ReloadReason::retry);
  EXPECT_EQ(log.lines().back(), "2026-05-04T10:30:00+00:00 w failed the journal could not be read");

  scheduler.advanceTo(utc("16:00:00"));
  // Retries wait 5, 10, 20, 40 minutes, then at most an hour.
  expectGoldenLines(fake.askTimes(), "scheduler_retries.txt");
  // The timeline of the first ask went on while the asks failed.
  const auto lines = log.lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(), "2026-05-04T12:00:00+00:00 w entry 2026-05-04T12:00:00+00:00"),
            lines.end());
  state = *scheduler.widget("w");
  EXPECT_TRUE(state.ok());
  EXPECT_EQ(state.entry, utc("14:45:00"));
  EXPECT_EQ(state.reloads.policy, 7) << "retries are charged";
  EXPECT_FALSE(state.nextReload);
}

TEST_F(SchedulerTest, ASourceThatThrowsOrAnswersUnusablyFailsTheAsk) {
  const auto nan = Date::fromReferenceSeconds(std::numeric_limits<double>::quiet_NaN());
  const auto infinity = Date::fromReferenceSeconds(std::numeric_limits<double>::infinity());
  struct Case {
    std::function<TimelineOutcome()> answer;
    std::optional<std::string> failure;
  };
  const std::vector<Case> cases = {
      {[]() -> TimelineOutcome { throw std::runtime_error("worker vanished"); },
       "the timeline source failed: worker vanished"},
      {[] { return TimelineOutcome{TimelineFailure{""}}; }, "the timeline source failed without a reason"},
      {[] { return timeline(std::vector<Date>(1001, utc("10:00:00")), std::nullopt); },
       "the timeline has 1001 entries, more than the 1000 the host follows"},
      {[] { return timeline(std::vector<Date>(1000, utc("10:00:00")), std::nullopt); }, std::nullopt},
      {[nan] {
         return timeline({utc("10:00:00"), nan}, std::nullopt);
       },
       "the timeline has an entry whose date is not a finite number"},
      {[infinity] { return timeline({}, TimelineReloadPolicy::after(infinity)); },
       "the timeline's reload date is not a finite number"},
  };
  for (const auto& failureCase : cases) {
    Scheduler scheduler(utc("10:00:00"), [&](std::string_view, Date) { return failureCase.answer(); });
    scheduler.place("w");
    EXPECT_EQ(scheduler.widget("w")->failure, failureCase.failure);
  }
}

// Widgets of every behaviour at once: daily reloads, a budget run out, a
// source that fails every third ask, entries swapping under a never policy.
TimelineOutcome mixedAnswer(std::string_view kind, Date when, int& asks) {
  ++asks;
  if (kind == "daily") return timeline({when}, TimelineReloadPolicy::after(when.addingTimeInterval(86400)));
  if (kind == "hungry") return usedUpAtOnce(kind, when);
  if (kind == "flaky" && asks % 3 == 0) return TimelineFailure{"deadline passed"};
  if (kind == "flaky") return timeline({when}, TimelineReloadPolicy::after(when.addingTimeInterval(7 * 3600)));
  return timeline({when, when.addingTimeInterval(1800), when.addingTimeInterval(5400)}, TimelineReloadPolicy::never());
}

struct MixedHost {
  EventLog log;
  std::map<std::string, int> asks;
  Scheduler scheduler{
      utc("10:00:00"),
      [this](std::string_view kind, Date when) { return mixedAnswer(kind, when, asks[std::string(kind)]); },
      log.listener()};
  MixedHost() {
    for (const char* kind : {"daily", "hungry", "flaky", "swapping"}) scheduler.place(kind);
  }
};

TEST_F(SchedulerTest, JumpingAWeekAheadGivesTheEventsOfLivingThroughIt) {
  const auto weekLater = utc("2026-05-11T10:00:00");
  MixedHost jumped;
  jumped.scheduler.advanceTo(weekLater);

  MixedHost stepped;
  while (const auto next = stepped.scheduler.nextEventTime()) {
    if (*next > weekLater) break;
    stepped.scheduler.advanceTo(*next);
  }
  stepped.scheduler.advanceTo(weekLater);

  MixedHost ticked;
  for (auto time = utc("10:00:00"); time < weekLater; time = time.addingTimeInterval(7 * 60 + 3)) {
    ticked.scheduler.advanceTo(time);
  }
  ticked.scheduler.advanceTo(weekLater);

  ASSERT_GT(jumped.log.events.size(), 1000u);
  ASSERT_EQ(jumped.log.events.size(), stepped.log.events.size());
  EXPECT_EQ(jumped.log.events, stepped.log.events);
  EXPECT_EQ(jumped.log.events, ticked.log.events);
  EXPECT_EQ(jumped.scheduler.widgets(), stepped.scheduler.widgets());
  EXPECT_EQ(jumped.scheduler.widgets(), ticked.scheduler.widgets());
}

TEST_F(SchedulerTest, SettingTheClockBackReloadsEveryWidgetFree) {
  MixedHost run;
  run.scheduler.advanceTo(utc("14:00:00"));
  const auto policyBefore = run.scheduler.widget("hungry")->reloads.policy;
  ASSERT_EQ(policyBefore, 48);
  run.log.events.clear();

  run.scheduler.advanceTo(utc("12:00:00"));
  EXPECT_EQ(run.scheduler.now(), utc("12:00:00"));
  EXPECT_EQ(run.log.linesOfType(EventType::reload), (Strings{"2026-05-04T12:00:00+00:00 daily reload time-change",
                                                             "2026-05-04T12:00:00+00:00 hungry reload time-change",
                                                             "2026-05-04T12:00:00+00:00 flaky reload time-change",
                                                             "2026-05-04T12:00:00+00:00 swapping reload time-change"}));
  const auto hungry = *run.scheduler.widget("hungry");
  EXPECT_EQ(hungry.reloads.policy, 24) << "the reloads after 12:00 have not happened";
  EXPECT_EQ(hungry.reloads.system, 2);
  EXPECT_EQ(hungry.entry, utc("12:00:00"));
}

TEST_F(SchedulerTest, JumpToSkipsWhatWasDueInBetween) {
  MixedHost run;
  run.scheduler.jumpTo(utc("2026-05-08T09:00:00"));
  for (const auto& event : run.log.events) {
    EXPECT_TRUE(event.at == utc("10:00:00") || event.at == utc("2026-05-08T09:00:00")) << testing::describe(event);
  }
  EXPECT_EQ(run.scheduler.widget("daily")->nextReload, utc("2026-05-09T09:00:00"));
}

TEST_F(SchedulerTest, RejectsBadCallsWithOneLine) {
  FakeSource fake{usedUpAtOnce};
  Scheduler scheduler(utc("10:00:00"), fake.source());
  scheduler.place("w");
  const auto message = [](const std::function<void()>& call) {
    try {
      call();
    } catch (const std::invalid_argument& error) {
      return std::string(error.what());
    }
    return std::string("no error");
  };
  EXPECT_EQ(message([&] { scheduler.place("w"); }), "widget w is already placed");
  EXPECT_EQ(message([&] { scheduler.place(""); }), "a widget kind must not be empty");
  EXPECT_EQ(message([&] { scheduler.reloadAll(utc("11:00:00"), ReloadReason::policy); }),
            "reloading all timelines takes app, environment or time-change, not policy");
  EXPECT_EQ(message([&] { scheduler.reloadAll(utc("09:00:00")); }),
            "cannot reload at 2026-05-04T09:00:00+00:00, before the host's time 2026-05-04T10:00:00+00:00");
  EXPECT_EQ(message([&] { scheduler.advanceTo(Date::fromReferenceSeconds(std::numeric_limits<double>::quiet_NaN())); }),
            "the time to advance to is not a finite instant");
  EXPECT_EQ(message([&] { Scheduler(utc("10:00:00"), fake.source(), {}, {.reloadBudget = 0}); }),
            "reload budget must be between 1 and 10000 reloads per 24 h, got 0");
  EXPECT_EQ(message([&] { Scheduler(utc("10:00:00"), fake.source(), {}, {.minimumReloadInterval = 0.5}); }),
            "minimum reload interval must be between 1 and 86400 seconds, got 0.5");
  EXPECT_EQ(message([&] { Scheduler(utc("10:00:00"), fake.source(), {}, {.maxRetryDelay = 60}); }),
            "longest retry delay must be between 300 and 86400 seconds, got 60");
  EXPECT_EQ(message([] { Scheduler(utc("10:00:00"), TimelineSource{}); }), "the scheduler needs a timeline source");
  EXPECT_EQ(scheduler.widgets().size(), 1u);
  EXPECT_EQ(scheduler.now(), utc("10:00:00"));
}

TEST_F(SchedulerTest, AListenerCallingBackInIsCaught) {
  Scheduler* self = nullptr;
  Scheduler scheduler(utc("10:00:00"), usedUpAtOnce,
                      [&self](const SchedulerEvent&) { self->advanceTo(utc("11:00:00")); });
  self = &scheduler;
  EXPECT_THROW(scheduler.place("w"), std::logic_error);
  EXPECT_EQ(scheduler.now(), utc("10:00:00"));
}

}  // namespace
}  // namespace quillan::host
