#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/ReloadReason.hpp"
#include "platform/Date.hpp"
#include "widgets/TimelineReloadPolicy.hpp"

namespace quillan::host {

// A provider answered: the entries' dates as returned, and the policy the host
// follows (atEnd, the phone's default, when the answer carried none).
struct TimelineReceived {
  std::vector<platform::Date> entryDates;
  widgets::TimelineReloadPolicy policy;
  bool operator==(const TimelineReceived&) const = default;
};

// An entry became what the widget shows: its date arrived, or a new timeline
// made it current (then it is shown afresh even when its date is unchanged,
// since the views read the journal again).
struct EntryShown {
  platform::Date entryDate;
  bool operator==(const EntryShown&) const = default;
};

// The host decided to reload. For budgetDeferred nothing is asked yet: the
// charged reload waits until `deferredUntil`, when a reload of its own reason
// (policy or retry) follows.
struct ReloadStarted {
  ReloadReason reason;
  std::optional<platform::Date> deferredUntil;
  bool operator==(const ReloadStarted&) const = default;
};

// An ask failed; the widget keeps its last timeline and shows the failure.
struct AskFailed {
  std::string reason;
  bool operator==(const AskFailed&) const = default;
};

enum class EventType { timeline, entry, reload, failed };

// Something that happened to one widget at a virtual instant, in the order the
// scheduler handled it. A reload that asks is followed at the same instant by
// `timeline` (then `entry` if one is current) or `failed`.
struct SchedulerEvent {
  platform::Date at;
  std::string kind;
  std::variant<TimelineReceived, EntryShown, ReloadStarted, AskFailed> detail;

  EventType type() const;
  bool operator==(const SchedulerEvent&) const = default;
};

// "timeline", "entry", "reload", "failed".
std::string_view eventTypeName(EventType type);

}  // namespace quillan::host
