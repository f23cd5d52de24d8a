#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/ReloadBudget.hpp"
#include "host/ReloadReason.hpp"
#include "platform/Date.hpp"
#include "widgets/TimelineReloadPolicy.hpp"

namespace quillan::host {

// What the host knows of one placed widget at the scheduler's time.
struct WidgetState {
  std::string kind;
  // The date of the entry on screen. Empty until a timeline has an entry whose
  // date has arrived: until then the host draws the widget's placeholder.
  std::optional<platform::Date> entry;
  // The timeline followed, in date order without repeats (the last one that
  // arrived; a failed ask keeps the one before).
  std::vector<platform::Date> entryDates;
  // Empty until a timeline arrived.
  std::optional<widgets::TimelineReloadPolicy> policy;
  // When the host asks next unless the app asks first, and why (policy or
  // retry). Empty when only the app can cause a reload (policy never).
  std::optional<platform::Date> nextReload;
  std::optional<ReloadReason> nextReloadReason;
  // Set while the widget is stale: a charged reload came due over budget and
  // waits until then (equal to nextReload).
  std::optional<platform::Date> staleUntil;
  // Why the last ask failed; empty when it succeeded.
  std::optional<std::string> failure;
  ReloadCounts reloads;
  int reloadBudget = ReloadBudget::kDefaultLimit;
  // Increases whenever the picture may change: an entry is shown (again), an
  // ask fails, or a widget recovers from a failure.
  std::uint64_t version = 0;

  bool ok() const { return !failure; }
  // Placed, its first ask not answered yet: neither a timeline nor a failure.
  bool loading() const { return !failure && !policy; }
  bool operator==(const WidgetState&) const = default;
};

}  // namespace quillan::host
