#pragma once

#include "host/SchedulerOptions.hpp"

namespace quillan::host {

// Seconds to wait before asking again after `consecutiveFailures` (1 or more)
// failed attempts in a row: options.minimumReloadInterval after the first,
// doubling after each further one, never more than options.maxRetryDelay.
// Failed timelines and failed views heal by the same rule.
double retryDelay(int consecutiveFailures, const SchedulerOptions& options);

}  // namespace quillan::host
