#include "host/HostClock.hpp"

#include <chrono>
#include <cmath>
#include <sstream>
#include <stdexcept>

namespace quillan::host {

using platform::Date;

HostClock::HostClock(RealTime realTime) : realTime_(std::move(realTime)) { goLive(); }

Date HostClock::systemTime() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

Date HostClock::now() const { return virtualAt(realTime_()); }

void HostClock::goLive() {
  const auto real = realTime_();
  anchor(real, real, 1.0, Mode::live);
}

void HostClock::pin(Date at) {
  if (!std::isfinite(at.timeIntervalSinceReferenceDate())) {
    throw std::invalid_argument("the clock cannot be pinned to a non-finite instant");
  }
  anchor(realTime_(), at, 0.0, Mode::pinned);
}

void HostClock::runFaster(double rate) {
  if (!(rate > 0.0 && rate <= kMaxRate)) {
    std::ostringstream message;
    message << "clock rate must be above 0 and at most " << kMaxRate << ", got " << rate;
    throw std::invalid_argument(message.str());
  }
  const auto real = realTime_();
  anchor(real, virtualAt(real), rate, Mode::running);
}

std::optional<Date> HostClock::realTimeOf(Date at) const {
  const double virtualAhead = at.timeIntervalSinceReferenceDate() - anchorVirtual_.timeIntervalSinceReferenceDate();
  if (mode_ == Mode::pinned) {
    if (virtualAhead > 0) return std::nullopt;
    return anchorReal_;
  }
  return anchorReal_.addingTimeInterval(virtualAhead / rate_);
}

Date HostClock::virtualAt(Date real) const {
  const double realElapsed = real.timeIntervalSinceReferenceDate() - anchorReal_.timeIntervalSinceReferenceDate();
  return anchorVirtual_.addingTimeInterval(realElapsed * rate_);
}

void HostClock::anchor(Date real, Date virtualInstant, double rate, Mode mode) {
  anchorReal_ = real;
  anchorVirtual_ = virtualInstant;
  rate_ = rate;
  mode_ = mode;
}

}  // namespace quillan::host
