#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/ReloadBudget.hpp"
#include "host/SchedulerEvent.hpp"
#include "host/SchedulerOptions.hpp"
#include "host/WidgetState.hpp"
#include "platform/Date.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::host {

// An ask the host will make of its own accord (for policy or retry), and
// whether the budget has already held it back.
struct PendingReload {
  platform::Date due;
  ReloadReason reason;
  bool deferred = false;
};

// One widget on the host's screen: the timeline it follows, the entry it
// shows, its next ask and its budget. The scheduler decides when things
// happen; this keeps what they leave behind.
class PlacedWidget {
 public:
  PlacedWidget(std::string kind, int reloadBudget);

  const std::string& kind() const { return kind_; }
  ReloadBudget& budget() { return budget_; }

  // Follows the timeline of `answer`, asked at `askedAt`, and schedules the
  // reload its policy asks for.
  TimelineReceived follow(const widgets::TimelineAnswer& answer, platform::Date askedAt,
                          const SchedulerOptions& options);
  // The ask at `at` failed: the timeline stays, and a retry is scheduled.
  void fail(std::string reason, platform::Date at, const SchedulerOptions& options);

  // The entry whose date is the latest not after `now`.
  std::optional<platform::Date> currentEntry(platform::Date now) const;
  // The first entry date after `now`: when the picture swaps next.
  std::optional<platform::Date> nextSwap(platform::Date now) const;
  void show(platform::Date entry);

  const std::optional<PendingReload>& pendingReload() const { return pending_; }
  void deferPendingReload(platform::Date until);

  WidgetState state(platform::Date now) const;

 private:
  std::string kind_;
  ReloadBudget budget_;
  std::vector<platform::Date> entries_;
  std::optional<widgets::TimelineReloadPolicy> policy_;
  std::optional<platform::Date> shown_;
  std::optional<PendingReload> pending_;
  std::optional<std::string> failure_;
  int consecutiveFailures_ = 0;
  std::uint64_t version_ = 0;
};

}  // namespace quillan::host
