#pragma once

#include <functional>
#include <optional>

#include "platform/Date.hpp"

namespace quillan::host {

// The host's virtual time, as the page sets it: live (the system's time),
// pinned to an instant, or running `rate` times faster than real time. Every
// change re-anchors the clock at the virtual instant it has reached, so
// changing the rate mid-run never makes time jump; only pin() sets a new
// instant. Real time comes from `realTime`, the system's unless a test
// supplies its own. Not thread-safe.
//
//   HostClock clock;               // live
//   clock.runFaster(60);           // from now on an hour passes in a minute
//   clock.pin(*ISO8601::parse("2026-03-29T01:59:00+01:00"));
class HostClock {
 public:
  using RealTime = std::function<platform::Date()>;
  enum class Mode { live, pinned, running };

  // Faster than this a year passes in half a minute; no page could follow,
  // and the host would spend its time asking rather than showing.
  static constexpr double kMaxRate = 1e6;

  explicit HostClock(RealTime realTime = systemTime);
  static platform::Date systemTime();

  platform::Date now() const;
  Mode mode() const { return mode_; }
  // How many virtual seconds pass per real second: 0 when pinned.
  double rate() const { return rate_; }

  void goLive();
  // Throws std::invalid_argument for a non-finite instant.
  void pin(platform::Date at);
  // Runs from the current virtual instant (pinned or not) at `rate`. Throws
  // std::invalid_argument for a rate that is not in (0, kMaxRate].
  void runFaster(double rate);

  // The real instant at which the virtual instant `at` arrives (in the past
  // when it has), so a live host can sleep until its next event; empty when it
  // never does at this setting (pinned before it). A change of setting moves
  // it, so a sleeping host must wake when the clock is changed.
  std::optional<platform::Date> realTimeOf(platform::Date at) const;

 private:
  platform::Date virtualAt(platform::Date real) const;
  void anchor(platform::Date real, platform::Date virtualInstant, double rate, Mode mode);

  RealTime realTime_;
  Mode mode_ = Mode::live;
  double rate_ = 1.0;
  platform::Date anchorVirtual_;
  platform::Date anchorReal_;
};

}  // namespace quillan::host
