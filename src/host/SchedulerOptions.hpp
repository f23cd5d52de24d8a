#pragma once

#include "host/ReloadBudget.hpp"

namespace quillan::host {

// The host's scheduling limits, in seconds where they are durations.
struct SchedulerOptions {
  // Charged reloads per widget in any rolling 24 h.
  int reloadBudget = ReloadBudget::kDefaultLimit;
  // The shortest wait before a policy reload whose date has already passed when
  // the timeline arrives (atEnd with every entry in the past, after(d) with d
  // not ahead): the phone imposes a gap of about five minutes between a
  // widget's updates, and without one such a policy would ask again at once,
  // forever. A policy date still ahead is kept to the second, so a timeline
  // asked at 23:59:59 reloads at midnight.
  double minimumReloadInterval = 5 * 60.0;
  // Retries after failed asks wait minimumReloadInterval, then twice as long
  // after each further failure, up to this.
  double maxRetryDelay = 60 * 60.0;
};

// Throws std::invalid_argument naming the first option out of range: the
// budget outside 1...ReloadBudget::kMaxLimit, the minimum interval outside
// 1 s...24 h, or the longest retry delay shorter than the minimum interval or
// longer than 24 h.
void checkSchedulerOptions(const SchedulerOptions& options);

}  // namespace quillan::host
