#include "memories/MatchingDays.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/Calendar.hpp"
#include "platform/CivilDays.hpp"

namespace quillan::memories {
namespace {

constexpr double kSecondsPerDay = 86400.0;
// The instants of a local day lie within this of its midnight read as UTC: no
// zone is a whole day from UTC (ICU's custom zones stop at 23:59:59), and a
// second more covers the rounding of milliseconds.
constexpr double kZoneReachSeconds = kSecondsPerDay + 1.0;
// The centuries around now whose days are listed; rows outside them are
// rare enough to ask about.
constexpr std::int64_t kYearsBack = 150;
constexpr std::int64_t kYearsAhead = 50;
// A leap year of the Gregorian calendar: every month and day occurs in it.
constexpr std::int64_t kLeapYear = 2000;

using Range = store::KeepRanges::Range;

double referenceSeconds(double unixSeconds) {
  return platform::Date::fromUnixSeconds(unixSeconds).timeIntervalSinceReferenceDate();
}

// Which months and days have now's text, by the text each has in `texts`.
// One whose text cannot be had is counted in.
std::vector<platform::CivilDate> monthsAndDaysLike(const std::string& nowText, MonthAndDayTexts& texts) {
  std::vector<platform::CivilDate> matching;
  const auto first = platform::daysFromCivil(kLeapYear, 1, 1);
  for (auto day = first; day < platform::daysFromCivil(kLeapYear + 1, 1, 1); ++day) {
    const auto* text = texts.textOfDay(day);
    if (!text || *text == nowText) matching.push_back(platform::civilFromDays(day));
  }
  return matching;
}

bool exists(std::int64_t year, unsigned month, unsigned day) {
  return platform::civilFromDays(platform::daysFromCivil(year, month, day)).day == day;
}

Range widenedDay(std::int64_t day) {
  return {referenceSeconds(static_cast<double>(day) * kSecondsPerDay - kZoneReachSeconds),
          referenceSeconds(static_cast<double>(day + 1) * kSecondsPerDay + kZoneReachSeconds)};
}

// The dates whose local day, in any zone, lies in the years from `firstYear`
// to `lastYear`.
Range listedSpan(std::int64_t firstYear, std::int64_t lastYear) {
  const auto firstDay = platform::daysFromCivil(firstYear, 1, 1);
  const auto endDay = platform::daysFromCivil(lastYear + 1, 1, 1);
  return {referenceSeconds(static_cast<double>(firstDay) * kSecondsPerDay + kZoneReachSeconds),
          referenceSeconds(static_cast<double>(endDay) * kSecondsPerDay - kZoneReachSeconds)};
}

}  // namespace

std::optional<store::KeepRanges> matchingDays(platform::Date now, MonthAndDayTexts& texts) {
  const auto nowDay = texts.localDay(now);
  if (!texts.sharesGregorianMonthAndDay(nowDay)) return std::nullopt;
  const auto nowYear = platform::civilFromDays(nowDay).year;
  const auto firstYear = std::max(nowYear - kYearsBack,
                                  platform::civilFromDays(MonthAndDayTexts::kFirstWholeGregorianYearDay).year);
  const auto lastYear = nowYear + kYearsAhead;
  const auto like = monthsAndDaysLike(texts.text(now), texts);
  // Today: the test counts the notes written on it, whatever their text.
  std::vector<Range> ranges{{now.timeIntervalSinceReferenceDate() - platform::kSameDayReachSeconds - 1.0,
                             now.timeIntervalSinceReferenceDate() + platform::kSameDayReachSeconds + 1.0}};
  for (auto year = firstYear; year <= lastYear; ++year) {
    for (const auto& monthAndDay : like) {
      if (exists(year, monthAndDay.month, monthAndDay.day)) {
        ranges.push_back(widenedDay(platform::daysFromCivil(year, monthAndDay.month, monthAndDay.day)));
      }
    }
  }
  return store::KeepRanges(listedSpan(firstYear, lastYear), std::move(ranges));
}

}  // namespace quillan::memories
