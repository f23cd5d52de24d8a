#include "memories/MonthAndDayTexts.hpp"

#include <cmath>

#include "platform/Calendar.hpp"
#include "platform/CivilDays.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::memories {
namespace {

bool hasGregorianMonths(const std::string& calendar) {
  for (const char* gregorian : {"gregorian", "iso8601", "japanese", "buddhist", "roc"}) {
    if (calendar == gregorian) return true;
  }
  return false;
}

}  // namespace

MonthAndDayTexts::MonthAndDayTexts()
    : offsets_(platform::TimeZone::current()),
      gregorianMonths_(hasGregorianMonths(platform::Calendar::current().identifier())) {}

const std::string& MonthAndDayTexts::text(platform::Date date) {
  const auto day = localDay(date);
  // A journal's notes come mostly in date order, several to a day.
  if (day == lastDay_ && lastText_) return *lastText_;
  auto& slot = sharesGregorianMonthAndDay(day) ? byMonthAndDay_[monthAndDayIndex(day)] : byDay_[day];
  if (!slot) {
    platform::DateFormatter formatter;
    formatter.setDateFormat("MMMM dd");
    slot = formatter.string(date);
  }
  lastDay_ = day;
  lastText_ = &*slot;
  return *slot;
}

const std::string* MonthAndDayTexts::textOfDay(std::int64_t day) {
  // Noon by the offset at noon UTC, then by the offset there: one of the two
  // lands on the day unless the zone moves by half a day at its noon.
  const double noon = static_cast<double>(day) * 86400.0 + 43200.0;
  auto instant = platform::Date::fromUnixSeconds(noon);
  for (int attempt = 0; attempt < 2; ++attempt) {
    instant = platform::Date::fromUnixSeconds(noon - offsets_.secondsFromGMT(instant));
    if (localDay(instant) == day) return &text(instant);
  }
  return nullptr;
}

std::int64_t MonthAndDayTexts::localDay(platform::Date date) {
  // In milliseconds, as the calendars themselves cut days.
  const double localMilliseconds = date.unixMilliseconds() + 1000.0 * offsets_.secondsFromGMT(date);
  return static_cast<std::int64_t>(std::floor(localMilliseconds / 86400000.0));
}

std::size_t MonthAndDayTexts::monthAndDayIndex(std::int64_t day) {
  const auto civil = platform::civilFromDays(day);
  return (civil.month - 1) * 31 + (civil.day - 1);
}

}  // namespace quillan::memories
