#pragma once

#include <cstdint>

namespace quillan::platform {

// A date of the proleptic Gregorian calendar.
struct CivilDate {
  std::int64_t year;
  unsigned month, day;  // 1-12, 1-31
};

// Days since 1970-01-01 of a proleptic Gregorian date, and back (H. Hinnant's
// algorithms): exact for every year a 64-bit day count holds, with no calendar
// library. ICU's Gregorian calendar agrees from 1582-10-15 on; before that it
// is Julian.
std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day);
CivilDate civilFromDays(std::int64_t days);

}  // namespace quillan::platform
