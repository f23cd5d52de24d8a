#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Scheduler.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::host::testing {

inline platform::Date at(std::string_view iso) { return *platform::ISO8601::parse(iso); }

// Dates as the tests write them: in the current zone, with its offset.
inline std::string local(platform::Date date) { return platform::ISO8601::format(date, platform::TimeZone::current()); }

inline std::string policyText(const widgets::TimelineReloadPolicy& policy) {
  switch (policy.kind()) {
    case widgets::TimelineReloadPolicy::Kind::atEnd: return "atEnd";
    case widgets::TimelineReloadPolicy::Kind::never: return "never";
    case widgets::TimelineReloadPolicy::Kind::after: return "after " + local(*policy.date());
  }
  return "?";
}

struct DetailText {
  std::string operator()(const TimelineReceived& timeline) const {
    std::string text = "timeline";
    for (const auto date : timeline.entryDates) text += " " + local(date);
    return text + " " + policyText(timeline.policy);
  }
  std::string operator()(const EntryShown& entry) const { return "entry " + local(entry.entryDate); }
  std::string operator()(const ReloadStarted& reload) const {
    std::string text = "reload " + std::string(reloadReasonName(reload.reason));
    if (reload.deferredUntil) text += " until " + local(*reload.deferredUntil);
    return text;
  }
  std::string operator()(const AskFailed& failed) const { return "failed " + failed.reason; }
};

// "<local time> <kind> <type> <details>", readable in a failed expectation.
inline std::string describe(const SchedulerEvent& event) {
  return local(event.at) + " " + event.kind + " " + std::visit(DetailText{}, event.detail);
}

// Everything a scheduler reported, in order.
struct EventLog {
  std::vector<SchedulerEvent> events;

  Scheduler::Listener listener() {
    return [this](const SchedulerEvent& event) { events.push_back(event); };
  }
  // The described events of `kind` (all when empty).
  std::vector<std::string> lines(std::string_view kind = {}) const {
    std::vector<std::string> described;
    for (const auto& event : events) {
      if (kind.empty() || event.kind == kind) described.push_back(describe(event));
    }
    return described;
  }
};

// A timeline source answering from a function, recording every ask.
struct FakeSource {
  using Answer = std::function<TimelineOutcome(std::string_view kind, platform::Date at)>;
  explicit FakeSource(Answer answerFunction) : answer(std::move(answerFunction)) {}

  Answer answer;
  std::vector<std::pair<std::string, platform::Date>> asks;

  TimelineSource source() {
    return [this](std::string_view kind, platform::Date when) {
      asks.emplace_back(std::string(kind), when);
      return answer(kind, when);
    };
  }
};

}  // namespace quillan::host::testing
