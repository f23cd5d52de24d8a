#pragma once

#include <variant>

#include "host/HostClock.hpp"
#include "platform/Date.hpp"

namespace quillan::host {

// A change to the host's clock: pinning it to an instant, following the
// system's, or running N times faster from where it is.
struct PinClock {
  platform::Date at;
};
struct LiveClock {};
struct RunClockFaster {
  double rate;
};
using ClockChange = std::variant<PinClock, LiveClock, RunClockFaster>;

void applyClockChange(HostClock& clock, const ClockChange& change);

}  // namespace quillan::host
