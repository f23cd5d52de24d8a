#pragma once

#include <cstddef>
#include <deque>

#include "platform/Date.hpp"

namespace quillan::host {

// The phone's reload budget is counted over the 24 hours before now, never
// reset at midnight.
inline constexpr double kRollingWindowSeconds = 24 * 3600.0;

// Instants of something that happened, counted over the rolling window: at
// `now` the window holds the instants in (now - 24 h, now], so an instant
// leaves it exactly 24 h after it happened. Instants older than a day before the
// newest are dropped as new ones arrive, so memory stays bounded by the rate.
class RollingWindow {
 public:
  void record(platform::Date at);
  std::size_t countAt(platform::Date now) const;
  // The instant at which the window at `now` has fewer than `limit` instants
  // left in it: `now` itself when it already has, otherwise when the oldest
  // surplus instant leaves it. `limit` must be at least 1.
  platform::Date firstMomentBelow(std::size_t limit, platform::Date now) const;
  // The clock was set back to `at`: what happened after it has not happened.
  void forgetAfter(platform::Date at);

 private:
  std::deque<platform::Date> instants_;
};

}  // namespace quillan::host
