#include "host/ClockChange.hpp"

namespace quillan::host {

void applyClockChange(HostClock& clock, const ClockChange& change) {
  if (const auto* pin = std::get_if<PinClock>(&change)) clock.pin(pin->at);
  else if (const auto* faster = std::get_if<RunClockFaster>(&change)) clock.runFaster(faster->rate);
  else clock.goLive();
}

}  // namespace quillan::host
