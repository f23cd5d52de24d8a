#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.hpp"

namespace quillan::platform {

// An IANA time zone, backed by ICU's zone database.
class TimeZone {
 public:
  // Empty for an identifier ICU does not know ("Mars/Olympus"). Accepts "UTC"/"GMT".
  static std::optional<TimeZone> named(std::string_view identifier);
  // The process default: set by the host, else $TZ, else the system zone.
  static TimeZone current();
  static void setCurrent(const TimeZone& zone);
  // Forgets a host-set default so that current() follows the environment again.
  static void resetCurrent();

  const std::string& identifier() const;
  // Offset from UTC at `date`, daylight saving included.
  int secondsFromGMT(Date date) const;

  bool operator==(const TimeZone& other) const { return identifier() == other.identifier(); }

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  explicit TimeZone(std::shared_ptr<const Impl> impl) : impl_(std::move(impl)) {}
  std::shared_ptr<const Impl> impl_;
};

}  // namespace quillan::platform
