#pragma once

#include <string>

#include "platform/Clock.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::testing {

// Pins the process clock, zone and locale for one test and restores the
// environment's defaults afterwards, so no test depends on the machine's TZ/LANG.
class ProcessEnvironment {
 public:
  ProcessEnvironment(const std::string& now, const std::string& zone, const std::string& locale = "en_US") {
    set(now, zone, locale);
  }
  ~ProcessEnvironment() {
    platform::Clock::unpin();
    platform::TimeZone::resetCurrent();
    platform::Locale::resetCurrent();
  }
  ProcessEnvironment(const ProcessEnvironment&) = delete;
  ProcessEnvironment& operator=(const ProcessEnvironment&) = delete;

  void set(const std::string& now, const std::string& zone, const std::string& locale) {
    platform::TimeZone::setCurrent(*platform::TimeZone::named(zone));
    platform::Locale::setCurrent(*platform::Locale::named(locale));
    setNow(now);
  }
  static void setNow(const std::string& now) { platform::Clock::pin(*platform::ISO8601::parse(now)); }

  // The date as the tests write it, in the current zone.
  static std::string local(platform::Date date) {
    return platform::ISO8601::format(date, platform::TimeZone::current());
  }
};

}  // namespace quillan::testing
