#pragma once

#include <optional>
#include <string>

#include "platform/Calendar.hpp"
#include "platform/Date.hpp"

namespace quillan::platform {

enum class DateFormatterStyle { none, short_, medium, long_, full };

// A date formatter: a pattern used as given ("MMMM dd", "LLL dd", "yyyy", "EEE",
// "d", "yyyy-LL-dd") or a date style, in the locale, zone and calendar current
// when the formatter was made (all three may be changed). Backed by ICU's
// SimpleDateFormat; building one is cheap because ICU formatters are cached
// internally per (pattern or style, locale, zone, calendar).
class DateFormatter {
 public:
  DateFormatter();

  void setDateFormat(std::string pattern);
  void setDateStyle(DateFormatterStyle style);
  void setLocale(const Locale& locale) { calendar_ = Calendar(locale, calendar_.timeZone()); }
  void setTimeZone(const TimeZone& zone) { calendar_ = Calendar(calendar_.locale(), zone); }

  std::string string(Date date) const;

 private:
  Calendar calendar_;
  std::string pattern_;
  DateFormatterStyle dateStyle_ = DateFormatterStyle::none;
};

}  // namespace quillan::platform
