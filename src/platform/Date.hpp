#pragma once

#include <compare>

namespace quillan::platform {

// Seconds between 1970-01-01T00:00:00Z and the reference date 2001-01-01T00:00:00Z.
inline constexpr double kReferenceDateUnixOffset = 978307200.0;

// A point in time as the journal stores it: a double of seconds since the
// reference date 2001-01-01T00:00:00Z (negative before it). Calendar days are
// never derived from a Date alone; that takes a Calendar and its time zone.
class Date {
 public:
  constexpr Date() = default;

  static constexpr Date fromReferenceSeconds(double seconds) { return Date(seconds); }
  static constexpr Date fromUnixSeconds(double seconds) { return Date(seconds - kReferenceDateUnixOffset); }
  // ICU's UDate: milliseconds since 1970.
  static constexpr Date fromUnixMilliseconds(double millis) { return fromUnixSeconds(millis / 1000.0); }

  constexpr double timeIntervalSinceReferenceDate() const { return seconds_; }
  constexpr double unixSeconds() const { return seconds_ + kReferenceDateUnixOffset; }
  constexpr double unixMilliseconds() const { return unixSeconds() * 1000.0; }

  constexpr Date addingTimeInterval(double seconds) const { return Date(seconds_ + seconds); }

  constexpr auto operator<=>(const Date&) const = default;

 private:
  constexpr explicit Date(double seconds) : seconds_(seconds) {}
  double seconds_ = 0.0;
};

}  // namespace quillan::platform
