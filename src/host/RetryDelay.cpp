#include "host/RetryDelay.hpp"

#include <algorithm>

namespace quillan::host {

double retryDelay(int consecutiveFailures, const SchedulerOptions& options) {
  double delay = options.minimumReloadInterval;
  for (int failure = 1; failure < consecutiveFailures && delay < options.maxRetryDelay; ++failure) delay *= 2;
  return std::min(delay, options.maxRetryDelay);
}

}  // namespace quillan::host
