#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Date.hpp"
#include "platform/ZoneOffsetTable.hpp"

namespace quillan::memories {

// The "MMMM dd" text of a date, formatted once per local day (or once per
// month and day where that is the same, below) in the current locale, zone and
// calendar; the zone's offsets are taken when it is made, so it lives for one
// read of the journal. Every calendar derives its fields from the
// local wall-clock day (UTC plus the zone's offset at that instant, cut at
// midnight), so two instants of one local day share month, day and year, and
// with them the text. The offsets come from a table of the zone's
// transitions: ICU is asked once per stretch, not per note.
class MonthAndDayTexts {
 public:
  MonthAndDayTexts();

  // 1583-01-01: before it ICU's Gregorian calendars count Julian days.
  static constexpr std::int64_t kFirstWholeGregorianYearDay = -141349;

  const std::string& text(platform::Date date);
  // The text of the local day `day` (days since 1970-01-01), as text() gives
  // it for the instants of that day; none when no instant near its noon lies
  // on it (a day the zone skipped).
  const std::string* textOfDay(std::int64_t day);

  // The local wall-clock day of `date`, in days since 1970-01-01.
  std::int64_t localDay(platform::Date date);

  // Whether the text of `day` depends on its proleptic Gregorian month and
  // day alone, as it does in the calendars whose months are the Gregorian
  // ones from 1583 on.
  bool sharesGregorianMonthAndDay(std::int64_t day) const {
    return gregorianMonths_ && day >= kFirstWholeGregorianYearDay;
  }

 private:
  static std::size_t monthAndDayIndex(std::int64_t day);

  platform::ZoneOffsetTable offsets_;
  bool gregorianMonths_;
  std::array<std::optional<std::string>, 12 * 31> byMonthAndDay_;
  // Node-based: a text's address stays put as days are added.
  std::unordered_map<std::int64_t, std::optional<std::string>> byDay_;
  std::int64_t lastDay_ = 0;
  const std::string* lastText_ = nullptr;
};

}  // namespace quillan::memories
