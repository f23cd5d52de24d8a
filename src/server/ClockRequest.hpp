#pragma once

#include <string_view>

#include "host/ClockChange.hpp"

namespace quillan::server {

// What POST /api/clock asks: {"now": ISO-8601} pins the clock, {"live": true}
// follows the system's, {"rate": N} runs N times faster from where it is.
// Throws RequestError for a body that is not one of the three objects.
host::ClockChange parseClockChange(std::string_view body);

}  // namespace quillan::server
