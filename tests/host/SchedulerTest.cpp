#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

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

// Times in these tests are UTC on 2026-05-04 unless a date is given.
Date utc(const std::string& time) { return at(time.size() == 8 ? "2026-05-04T" + time + "Z" : time + "Z"); }

TimelineOutcome timeline(std::vector<Date> entries, std::optional<TimelineReloadPolicy> policy) {
  return TimelineAnswer{std::move(entries), policy};
}

// An answer that is used up as soon as it is given: one entry now, atEnd, so
// the widget asks every minimum interval and meets its budget within a day.
TimelineOutcome usedUpAtOnce(std::string_view, Date when) { return timeline({when}, TimelineReloadPolicy::atEnd()); }

class SchedulerTest : public ::testing::Test {
 protected:
  quillan::testing::ProcessEnvironment environment{"2026-05-04T00:00:00Z", "UTC"};
};

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
    std::string firstAsks;
    for (std::size_t ask = 0; ask < std::min<std::size_t>(2, fake.asks.size()); ++ask)
      firstAsks += local(fake.asks[ask].second).substr(11, 8) + " ";
    return (state.policy ? testing::policyText(*state.policy) : "no policy") + ", due " +
           (state.nextReload ? local(*state.nextReload) : "never") + ", asked at " + firstAsks + "(" +
           std::to_string(fake.asks.size()) + " asks)";
  });
}

// Widgets of every behaviour at once: daily reloads, a budget run out, a
// source that fails every third ask, entries swapping under a never policy.
FakeSource::Answer mixed() {
  return [asks = std::map<std::string, int>()](std::string_view kind, Date when) mutable {
    const int ask = ++asks[std::string(kind)];
    if (kind == "daily") return timeline({when}, TimelineReloadPolicy::after(when.addingTimeInterval(86400)));
    if (kind == "hungry") return usedUpAtOnce(kind, when);
    if (kind == "flaky" && ask % 3 == 0) return TimelineOutcome{TimelineFailure{"deadline passed"}};
    if (kind == "flaky") return timeline({when}, TimelineReloadPolicy::after(when.addingTimeInterval(7 * 3600)));
    return timeline({when, when.addingTimeInterval(1800), when.addingTimeInterval(5400)},
                    TimelineReloadPolicy::never());
  };
}

struct MixedHost {
  EventLog log;
  Scheduler scheduler{utc("10:00:00"), mixed(), log.listener()};
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
  for (auto time = utc("10:00:00"); time < weekLater; time = time.addingTimeInterval(7 * 60 + 3))
    ticked.scheduler.advanceTo(time);
  ticked.scheduler.advanceTo(weekLater);

  ASSERT_GT(jumped.log.events.size(), 1000u);
  EXPECT_EQ(jumped.log.events, stepped.log.events);
  EXPECT_EQ(jumped.log.events, ticked.log.events);
  EXPECT_EQ(jumped.scheduler.widgets(), stepped.scheduler.widgets());
  EXPECT_EQ(jumped.scheduler.widgets(), ticked.scheduler.widgets());
}

// A widget's state on one line.
std::string stateText(const WidgetState& state) {
  std::string text = state.kind + ": entry " + (state.entry ? local(*state.entry) : "none") + ", entries";
  for (const auto date : state.entryDates) text += " " + local(date);
  text += ", " + (state.policy ? testing::policyText(*state.policy) : "no policy") + ", next reload ";
  text += state.nextReload ? local(*state.nextReload) + " " + std::string(reloadReasonName(*state.nextReloadReason))
                           : "never";
  if (state.staleUntil) text += ", stale until " + local(*state.staleUntil);
  if (state.failure) text += ", failed: " + *state.failure;
  const auto& counts = state.reloads;
  return text + ", reloads " + std::to_string(counts.policy) + " charged " + std::to_string(counts.app) + " app " +
         std::to_string(counts.system) + " system " + std::to_string(counts.budgetDeferred) + " deferred, version " +
         std::to_string(state.version);
}

// The events since the last checkpoint (the first and last few of a long
// run), then every widget's state, the clock and the asks so far.
std::string checkpointText(const Scheduler& scheduler, EventLog& log, const FakeSource& fake) {
  auto lines = log.lines();
  log.events.clear();
  if (lines.size() > 40) {
    const auto hidden = lines.size() - 8;
    lines.erase(lines.begin() + 4, lines.end() - 4);
    lines.insert(lines.begin() + 4, "(" + std::to_string(hidden) + " more)");
  }
  std::string text;
  for (const auto& line : lines) text += "  " + line + "\n";
  for (const auto& state : scheduler.widgets()) text += "  = " + stateText(state) + "\n";
  const auto next = scheduler.nextEventTime();
  return text + "  = now " + local(scheduler.now()) + ", next event " + (next ? local(*next) : "none") + ", " +
         std::to_string(fake.asks.size()) + " asks\n";
}

// Runs "STEP | STEP ...": place KIND, advance TIME, reload TIME (the app's),
// environment TIME, jump TIME, check (a checkpoint); times as utc() reads them.
void runSteps(Scheduler& scheduler, const std::string& steps, const std::function<void()>& check) {
  quillan::testing::forEachStep(steps, [&](const std::vector<std::string>& step) {
    if (step[0] == "check") check();
    else if (step[0] == "place") scheduler.place(step[1]);
    else if (step[0] == "advance") scheduler.advanceTo(utc(step[1]));
    else if (step[0] == "reload") scheduler.reloadAll(utc(step[1]));
    else if (step[0] == "environment") scheduler.reloadAll(utc(step[1]), ReloadReason::environment);
    else if (step[0] == "jump") scheduler.jumpTo(utc(step[1]));
  });
}

// Answers `first` to the first ask and `later` to every other.
FakeSource::Answer firstThen(TimelineOutcome first, TimelineOutcome later) {
  return [first, later, asked = false](std::string_view, Date) mutable {
    return std::exchange(asked, true) ? later : first;
  };
}

TimelineOutcome failingForAWhile(Date when, int& asks) {
  if (++asks == 1) return timeline({when, utc("12:00:00")}, TimelineReloadPolicy::never());
  if (asks < 9) return TimelineFailure{"the journal could not be read"};
  return timeline({when}, TimelineReloadPolicy::never());
}

// Widgets placed and lived with; the golden file holds what the scheduler did
// and held at each check.
struct Scenario {
  const char* name;
  const char* start;  // as utc() reads it
  FakeSource::Answer answer;
  std::string steps;
  SchedulerOptions options = {};
};

std::vector<Scenario> scenarios() {
  const std::string mixedKinds = "place daily | place hungry | place flaky | place swapping";
  return {
      {"entries swap at their dates, in order and without repeats, without asking", "10:00:00",
       [](std::string_view, Date) {
         return timeline({utc("11:00:00"), utc("09:00:00"), utc("12:00:00"), utc("12:00:00")},
                         TimelineReloadPolicy::never());
       },
       "place w | check | advance 2026-05-05T00:00:00 | check"},
      {"before any entry arrives the widget keeps what it showed", "10:00:00",
       firstThen(timeline({utc("10:30:00")}, TimelineReloadPolicy::never()),
                 timeline({utc("13:00:00")}, TimelineReloadPolicy::never())),
       "place w | check | advance 10:30:00 | reload 11:00:00 | check | advance 13:00:00 | check"},
      {"atEnd asks when the last entry is shown", "10:00:00",
       [](std::string_view, Date when) {
         return timeline({when, when.addingTimeInterval(3600)}, TimelineReloadPolicy::atEnd());
       },
       "place w | advance 11:30:00 | check"},
      // Placed free at 00:00, then charged every 5 minutes: the 70th at 05:50,
      // and the 71st, due at 05:55, waits for the first (00:05) to leave the
      // window; from then on each reload replaces one that leaves it.
      {"over budget a policy reload waits until the window frees a slot", "00:00:00", usedUpAtOnce,
       "place w | advance 2026-05-05T00:00:00 | check | advance 2026-05-05T00:30:00 | check"},
      // Over a budget of 2 from 00:15; the app's reload is free and fresh, its
      // own policy reload still charged and waiting for the same slot.
      {"app reloads are never charged and work over budget",
       "00:00:00",
       usedUpAtOnce,
       "place w | advance 01:00:00 | check | reload 02:00:00 | check | advance 03:00:00 | check | "
       "environment 03:00:00 | check",
       {.reloadBudget = 2}},
      // Retries wait 5, 10, 20, 40 minutes, then at most an hour, and are
      // charged; the timeline of the first ask goes on meanwhile.
      {"a failed ask keeps the timeline and retries later and later", "10:00:00",
       [asks = 0](std::string_view, Date when) mutable { return failingForAWhile(when, asks); },
       "place w | reload 10:30:00 | check | advance 16:00:00 | check"},
      {"setting the clock back reloads every widget free", "10:00:00", mixed(),
       mixedKinds + " | advance 14:00:00 | check | advance 12:00:00 | check"},
      {"jumpTo skips what was due in between", "10:00:00", mixed(),
       mixedKinds + " | check | jump 2026-05-08T09:00:00 | check"},
  };
}

TEST_F(SchedulerTest, WidgetsLivedWithDoWhatTheirTimelinesAndBudgetsSay) {
  std::string transcript;
  for (const auto& scenario : scenarios()) {
    FakeSource fake{scenario.answer};
    EventLog log;
    Scheduler scheduler(utc(scenario.start), fake.source(), log.listener(), scenario.options);
    transcript += std::string(scenario.name) + "\n";
    runSteps(scheduler, scenario.steps, [&] { transcript += checkpointText(scheduler, log, fake); });
  }
  quillan::testing::expectGoldenText(transcript, "scheduler_scenarios.txt");
}

// "answer HOW" => the failure of a widget placed at 10:00 whose source answers so:
// throws, silent-failure, entries N [one more at SECONDS], policy-after SECONDS.
std::string unusableAnswer(const std::vector<std::string>& words) {
  Scheduler scheduler(utc("10:00:00"), [&](std::string_view, Date) -> TimelineOutcome {
    if (words[1] == "throws") throw std::runtime_error("worker vanished");
    if (words[1] == "silent-failure") return TimelineFailure{""};
    if (words[1] == "policy-after")
      return timeline({}, TimelineReloadPolicy::after(Date::fromReferenceSeconds(std::stod(words[2]))));
    std::vector<Date> entries(std::stoul(words[2]), utc("10:00:00"));
    if (words.size() > 3) entries.push_back(Date::fromReferenceSeconds(std::stod(words[3])));
    return timeline(entries, std::nullopt);
  });
  scheduler.place("w");
  return scheduler.widget("w")->failure.value_or("no failure");
}

// "answer HOW" as unusableAnswer() reads it, or "CALL ARGS" on a scheduler at
// 10:00 holding w => the one line refusing it, which must leave it unchanged.
std::string schedulerAnswer(const std::string& question) {
  const auto words = quillan::testing::words(question);
  if (words[0] == "answer") return unusableAnswer(words);
  FakeSource fake{usedUpAtOnce};
  Scheduler scheduler(utc("10:00:00"), fake.source());
  scheduler.place("w");
  const auto number = [&] { return std::stod(words[1]); };
  try {
    if (words[0] == "place") scheduler.place(words.size() > 1 ? words[1] : "");
    else if (words[0] == "reloadAll" && words.size() > 2) scheduler.reloadAll(utc(words[1]), ReloadReason::policy);
    else if (words[0] == "reloadAll") scheduler.reloadAll(utc(words[1]));
    else if (words[0] == "advanceTo") scheduler.advanceTo(Date::fromReferenceSeconds(number()));
    else if (words[0] == "budget") Scheduler(utc("10:00:00"), fake.source(), {}, {.reloadBudget = std::stoi(words[1])});
    else if (words[0] == "minimumInterval")
      Scheduler(utc("10:00:00"), fake.source(), {}, {.minimumReloadInterval = number()});
    else if (words[0] == "maxRetryDelay") Scheduler(utc("10:00:00"), fake.source(), {}, {.maxRetryDelay = number()});
    else if (words[0] == "noSource") Scheduler(utc("10:00:00"), TimelineSource{});
  } catch (const std::invalid_argument& error) {
    const bool unchanged = scheduler.widgets().size() == 1 && scheduler.now() == utc("10:00:00");
    return error.what() + std::string(unchanged ? "" : " AFTER A CHANGE");
  }
  return "accepted";
}

TEST_F(SchedulerTest, UnusableAnswersFailTheAskAndBadCallsAreRefusedInOneLine) {
  quillan::testing::expectGoldenAnswers("scheduler_refusals.txt", schedulerAnswer);
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
