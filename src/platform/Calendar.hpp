#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/Date.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::platform {

// Calendar arithmetic amounts; unset components are left alone.
struct DateComponents {
  std::optional<std::int64_t> era, year, month, day, hour, minute, second;
};

// Two instants on one local calendar day are less than 24 hours of wall time
// apart, and a zone's offset moves by at most 26 hours (-12:00 to +14:00), so
// they lie within 50 hours of each other. Instants farther apart can be told
// apart without asking a calendar, which leaves every answer as it was.
inline constexpr double kSameDayReachSeconds = 50 * 3600.0;

enum class CalendarComponent { era, year, month, day, hour, minute, second };

// The user's calendar: the locale's calendar system (Gregorian, Japanese,
// Buddhist, Hebrew, ...) in a time zone, backed by an ICU calendar. Days are
// calendar days, never 86,400 seconds.
class Calendar {
 public:
  Calendar(const Locale& locale, const TimeZone& zone);
  // Calendar.current: built from Locale::current() and TimeZone::current() at the call.
  static Calendar current();

  const Locale& locale() const { return locale_; }
  const TimeZone& timeZone() const { return timeZone_; }
  std::string identifier() const;

  // The first instant of the local day holding `date`. Where that midnight does
  // not exist (a daylight-saving jump at 00:00) it is the first valid time after it.
  Date startOfDay(Date date) const;

  // date(byAdding:to:wrappingComponents: false): adds the set components, largest
  // first, keeping the wall-clock time where it exists. Empty when the result
  // cannot be represented.
  std::optional<Date> dateByAdding(const DateComponents& components, Date date) const;
  // date(byAdding: component, value:, to:, wrappingComponents: false).
  std::optional<Date> dateByAdding(CalendarComponent component, std::int64_t value, Date date) const;

  // isDate(_:equalTo:toGranularity:): the two instants agree in every component
  // down to `granularity` (for .day: era, year, month and day) in this calendar and zone.
  bool isDate(Date a, Date b, CalendarComponent granularity) const;

  // The value of one component of `date` (day of month, month 1-12, year of era, era).
  std::int64_t component(CalendarComponent component, Date date) const;

 private:
  Locale locale_;
  TimeZone timeZone_;
};

}  // namespace quillan::platform
