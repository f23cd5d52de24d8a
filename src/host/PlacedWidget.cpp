#include "host/PlacedWidget.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/RetryDelay.hpp"

namespace quillan::host {
namespace {

using platform::Date;
using widgets::TimelineReloadPolicy;

std::vector<Date> sortedWithoutRepeats(std::vector<Date> dates) {
  std::sort(dates.begin(), dates.end());
  dates.erase(std::unique(dates.begin(), dates.end()), dates.end());
  return dates;
}

// A policy names the earliest date for the next ask: its own for after, the
// last entry's for atEnd (the timeline has run out once that entry is shown).
// When that date is not ahead of the ask, waiting the minimum interval keeps
// the widget from asking again at once.
std::optional<Date> policyReloadDate(const TimelineReloadPolicy& policy, const std::vector<Date>& entries, Date askedAt,
                                     double minimumInterval) {
  std::optional<Date> earliest;
  switch (policy.kind()) {
    case TimelineReloadPolicy::Kind::never: return std::nullopt;
    case TimelineReloadPolicy::Kind::after: earliest = policy.date(); break;
    case TimelineReloadPolicy::Kind::atEnd: earliest = entries.empty() ? askedAt : entries.back(); break;
  }
  if (earliest && *earliest > askedAt) return earliest;
  return askedAt.addingTimeInterval(minimumInterval);
}

}  // namespace

PlacedWidget::PlacedWidget(std::string kind, int reloadBudget) : kind_(std::move(kind)), budget_(reloadBudget) {}

TimelineReceived PlacedWidget::follow(const widgets::TimelineAnswer& answer, Date askedAt,
                                      const SchedulerOptions& options) {
  entries_ = sortedWithoutRepeats(answer.entryDates);
  policy_ = answer.policy.value_or(TimelineReloadPolicy::atEnd());
  pending_.reset();
  if (const auto due = policyReloadDate(*policy_, entries_, askedAt, options.minimumReloadInterval)) {
    pending_ = PendingReload{*due, ReloadReason::policy};
  }
  consecutiveFailures_ = 0;
  if (failure_) {
    failure_.reset();
    ++version_;
  }
  return {answer.entryDates, *policy_};
}

void PlacedWidget::fail(std::string reason, Date at, const SchedulerOptions& options) {
  failure_ = std::move(reason);
  ++consecutiveFailures_;
  ++version_;
  pending_ = PendingReload{at.addingTimeInterval(retryDelay(consecutiveFailures_, options)), ReloadReason::retry};
}

std::optional<Date> PlacedWidget::currentEntry(Date now) const {
  const auto after = std::upper_bound(entries_.begin(), entries_.end(), now);
  if (after == entries_.begin()) return std::nullopt;
  return *std::prev(after);
}

std::optional<Date> PlacedWidget::nextSwap(Date now) const {
  const auto after = std::upper_bound(entries_.begin(), entries_.end(), now);
  if (after == entries_.end()) return std::nullopt;
  return *after;
}

void PlacedWidget::show(Date entry) {
  shown_ = entry;
  ++version_;
}

void PlacedWidget::deferPendingReload(Date until) {
  pending_->due = until;
  pending_->deferred = true;
}

WidgetState PlacedWidget::state(Date now) const {
  WidgetState state;
  state.kind = kind_;
  state.entry = shown_;
  state.entryDates = entries_;
  state.policy = policy_;
  if (pending_) {
    state.nextReload = pending_->due;
    state.nextReloadReason = pending_->reason;
    if (pending_->deferred) state.staleUntil = pending_->due;
  }
  state.failure = failure_;
  state.reloads = budget_.countsAt(now);
  state.reloadBudget = budget_.limit();
  state.version = version_;
  return state;
}

}  // namespace quillan::host
