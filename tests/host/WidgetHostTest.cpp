#include <gtest/gtest.h>

#include <map>

#include "EventLog.hpp"
#include "host/WidgetHost.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::host {
namespace {

using platform::Date;
using testing::at;
using testing::EventLog;
using testing::FakeSource;
using widgets::TimelineAnswer;
using widgets::TimelineReloadPolicy;

constexpr double kHour = 3600;
const Date kStart = at("2026-05-04T10:00:00Z");

class WidgetHostTest : public ::testing::Test {
 protected:
  quillan::testing::ProcessEnvironment environment{"2026-05-04T00:00:00Z", "UTC"};
};

// "INPUT [SECONDS]" given a host at kStart with two widgets placed (SECONDS
// from kStart for setClock and advanceTo) => the reloads it started, counted
// by reason, and the host's time after, in seconds from kStart.
std::string inputAnswer(const std::string& question) {
  const auto words = quillan::testing::words(question);
  // One entry at the ask, asking again a day later: living through two days
  // shows as daily policy reloads, a significant time change as one free ask.
  FakeSource source{[](std::string_view, Date when) -> TimelineOutcome {
    return TimelineAnswer{{when}, TimelineReloadPolicy::after(when.addingTimeInterval(24 * kHour))};
  }};
  EventLog log;
  WidgetHost host(kStart, source.source(), log.listener());
  host.place("a");
  host.place("b");
  log.events.clear();
  const auto when = kStart.addingTimeInterval(words.size() > 1 ? std::stod(words[1]) : 0);
  if (words[0] == "setClock") host.setClock(when);
  else if (words[0] == "advanceTo") host.advanceTo(when);
  else if (words[0] == "environmentChanged") host.environmentChanged();
  else if (words[0] == "appWroteJournal") host.appWroteJournal();
  std::map<std::string, int> reloads;
  for (const auto& event : log.events) {
    if (const auto* reload = std::get_if<ReloadStarted>(&event.detail))
      ++reloads[std::string(reloadReasonName(reload->reason))];
  }
  std::string answer;
  for (const auto& [reason, count] : reloads) answer += std::to_string(count) + " " + reason + ", ";
  return answer + "now " +
         std::to_string(static_cast<long>(host.now().timeIntervalSinceReferenceDate() -
                                          kStart.timeIntervalSinceReferenceDate()));
}

// Setting the clock lives through at most two days ahead and jumps otherwise;
// time that passes is always lived through, however far, and only going back
// is a time change. Every other input asks every widget free.
TEST_F(WidgetHostTest, EachInputReloadsTwoWidgetsForItsReason) {
  quillan::testing::expectGoldenAnswers("widget_host_inputs.txt", inputAnswer);
}

}  // namespace
}  // namespace quillan::host
