#include "platform/Calendar.hpp"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/Fatal.hpp"
#include "platform/IcuCalendarCache.hpp"

namespace quillan::platform {
namespace {

std::unique_ptr<icu::Calendar> icuCalendar(const Locale& locale, const TimeZone& zone) {
  auto calendar = makeIcuCalendar(locale, zone);
  if (!calendar) {
    fatalError("Calendar", "no calendar for locale " + locale.identifier() + " in " + zone.identifier());
  }
  return calendar;
}

UCalendarDateFields icuField(CalendarComponent component) {
  switch (component) {
    case CalendarComponent::era: return UCAL_ERA;
    case CalendarComponent::year: return UCAL_YEAR;
    case CalendarComponent::month: return UCAL_MONTH;
    case CalendarComponent::day: return UCAL_DATE;
    case CalendarComponent::hour: return UCAL_HOUR_OF_DAY;
    case CalendarComponent::minute: return UCAL_MINUTE;
    case CalendarComponent::second: return UCAL_SECOND;
  }
  return UCAL_DATE;
}

// Whole milliseconds: ICU's fields have no finer unit, and the fraction is put
// back by the callers so that arithmetic never loses it.
double wholeMilliseconds(Date date) { return std::floor(date.unixMilliseconds()); }

bool fitsInt32(std::int64_t value) {
  return value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max();
}

// ICU keeps instants within about +-5.8 million years of 1970 and silently
// wraps results beyond that, so amounts are checked before and after adding.
constexpr double kIcuLimitMillis = 1.8e17;

double approximateMillis(CalendarComponent component) {
  constexpr double kDay = 86'400'000.0;
  switch (component) {
    case CalendarComponent::era: return 0.0;  // eras have no typical length
    case CalendarComponent::year: return 365.2425 * kDay;
    case CalendarComponent::month: return 30.436875 * kDay;
    case CalendarComponent::day: return kDay;
    case CalendarComponent::hour: return 3'600'000.0;
    case CalendarComponent::minute: return 60'000.0;
    case CalendarComponent::second: return 1'000.0;
  }
  return 0.0;
}

bool withinIcuRange(double millis) { return std::isfinite(millis) && std::fabs(millis) < kIcuLimitMillis; }

// Adds one amount; false when ICU cannot represent the result.
bool add(icu::Calendar& calendar, CalendarComponent component, std::int64_t value) {
  if (!fitsInt32(value)) return false;
  UErrorCode status = U_ZERO_ERROR;
  const double before = calendar.getTime(status);
  if (!withinIcuRange(before + approximateMillis(component) * static_cast<double>(value))) return false;
  calendar.add(icuField(component), static_cast<int32_t>(value), status);
  const double after = calendar.getTime(status);
  if (U_FAILURE(status) || !withinIcuRange(after)) return false;
  return value == 0 || (value > 0) == (after > before);
}

std::optional<Date> shifted(Date date, double fromMillis, const icu::Calendar& calendar) {
  UErrorCode status = U_ZERO_ERROR;
  const double toMillis = calendar.getTime(status);
  if (U_FAILURE(status) || !std::isfinite(toMillis)) return std::nullopt;
  return date.addingTimeInterval((toMillis - fromMillis) / 1000.0);
}

// The fields that must agree for two instants to share a unit of `granularity`,
// largest first; the leap-month flag keeps lunisolar months apart.
std::vector<UCalendarDateFields> fieldsDownTo(CalendarComponent granularity) {
  std::vector<UCalendarDateFields> fields{UCAL_ERA};
  if (granularity >= CalendarComponent::year) fields.push_back(UCAL_YEAR);
  if (granularity >= CalendarComponent::month) {
    fields.push_back(UCAL_MONTH);
    fields.push_back(UCAL_IS_LEAP_MONTH);
  }
  if (granularity >= CalendarComponent::day) fields.push_back(UCAL_DATE);
  if (granularity >= CalendarComponent::hour) fields.push_back(UCAL_HOUR_OF_DAY);
  if (granularity >= CalendarComponent::minute) fields.push_back(UCAL_MINUTE);
  if (granularity >= CalendarComponent::second) fields.push_back(UCAL_SECOND);
  return fields;
}

}  // namespace

Calendar::Calendar(const Locale& locale, const TimeZone& zone) : locale_(locale), timeZone_(zone) {}

Calendar Calendar::current() { return Calendar(Locale::current(), TimeZone::current()); }

std::string Calendar::identifier() const { return icuCalendar(locale_, timeZone_)->getType(); }

Date Calendar::startOfDay(Date date) const {
  auto calendar = icuCalendar(locale_, timeZone_);
  UErrorCode status = U_ZERO_ERROR;
  calendar->setTime(wholeMilliseconds(date), status);
  // A missing midnight becomes the first instant after the gap, not 00:00 read
  // with the old offset.
  calendar->setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
  calendar->set(UCAL_HOUR_OF_DAY, 0);
  calendar->set(UCAL_MINUTE, 0);
  calendar->set(UCAL_SECOND, 0);
  calendar->set(UCAL_MILLISECOND, 0);
  const double start = calendar->getTime(status);
  if (U_FAILURE(status)) fatalError("Calendar", "no start of day for the date");
  return Date::fromUnixMilliseconds(start);
}

std::optional<Date> Calendar::dateByAdding(const DateComponents& components, Date date) const {
  auto calendar = icuCalendar(locale_, timeZone_);
  const double from = wholeMilliseconds(date);
  UErrorCode status = U_ZERO_ERROR;
  calendar->setTime(from, status);
  const std::pair<std::optional<std::int64_t>, CalendarComponent> amounts[] = {
      {components.era, CalendarComponent::era},       {components.year, CalendarComponent::year},
      {components.month, CalendarComponent::month},   {components.day, CalendarComponent::day},
      {components.hour, CalendarComponent::hour},     {components.minute, CalendarComponent::minute},
      {components.second, CalendarComponent::second},
  };
  for (const auto& [value, component] : amounts) {
    if (value && !add(*calendar, component, *value)) return std::nullopt;
  }
  return shifted(date, from, *calendar);
}

std::optional<Date> Calendar::dateByAdding(CalendarComponent component, std::int64_t value, Date date) const {
  DateComponents components;
  switch (component) {
    case CalendarComponent::era: components.era = value; break;
    case CalendarComponent::year: components.year = value; break;
    case CalendarComponent::month: components.month = value; break;
    case CalendarComponent::day: components.day = value; break;
    case CalendarComponent::hour: components.hour = value; break;
    case CalendarComponent::minute: components.minute = value; break;
    case CalendarComponent::second: components.second = value; break;
  }
  return dateByAdding(components, date);
}

bool Calendar::isDate(Date a, Date b, CalendarComponent granularity) const {
  auto first = icuCalendar(locale_, timeZone_);
  auto second = std::unique_ptr<icu::Calendar>(first->clone());
  UErrorCode status = U_ZERO_ERROR;
  first->setTime(wholeMilliseconds(a), status);
  second->setTime(wholeMilliseconds(b), status);
  for (const auto field : fieldsDownTo(granularity)) {
    if (first->get(field, status) != second->get(field, status)) return false;
  }
  return U_SUCCESS(status);
}

std::int64_t Calendar::component(CalendarComponent component, Date date) const {
  auto calendar = icuCalendar(locale_, timeZone_);
  UErrorCode status = U_ZERO_ERROR;
  calendar->setTime(wholeMilliseconds(date), status);
  const auto value = calendar->get(icuField(component), status);
  if (U_FAILURE(status)) fatalError("Calendar", "no value for the date");
  // ICU counts months from 0.
  return component == CalendarComponent::month ? value + 1 : value;
}

}  // namespace quillan::platform
