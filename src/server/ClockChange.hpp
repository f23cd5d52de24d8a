#pragma once

#include <string_view>
#include <variant>

#include "host/HostClock.hpp"
#include "platform/Date.hpp"

namespace quillan::server {

// What POST /api/clock asks: {"now": ISO-8601} pins the clock, {"live": true}
// follows the system's, {"rate": N} runs N times faster from where it is.
struct PinClock {
  platform::Date at;
};
struct LiveClock {};
struct RunClockFaster {
  double rate;
};
using ClockChange = std::variant<PinClock, LiveClock, RunClockFaster>;

// Throws RequestError for a body that is not one of the three objects.
ClockChange parseClockChange(std::string_view body);

void applyClockChange(host::HostClock& clock, const ClockChange& change);

}  // namespace quillan::server
