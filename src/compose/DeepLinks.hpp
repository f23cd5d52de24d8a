#pragma once

#include <string_view>

#include "platform/Date.hpp"
#include "platform/URL.hpp"

namespace quillan::compose {

// The closed set of URLs a tap on a widget opens in the app.
inline constexpr std::string_view kOnThisDayLink = "widget-deeplink://OnThisDay";
inline constexpr std::string_view kAddRecordLink = "widget-deeplink://AddRecord";
// Takes the day as one path component; deliberately a scheme of its own.
inline constexpr std::string_view kRecordDateLink = "widget-deeplink-addrecord://RecordDate";
// The day in a RecordDate link: stand-alone month number ("LL"), zero-padded.
inline constexpr std::string_view kRecordDateFormat = "yyyy-LL-dd";

// The literals parsed; a literal that does not parse stops the process.
platform::URL onThisDayURL();
platform::URL addRecordURL();

// "widget-deeplink-addrecord://RecordDate/2026-03-05": the local calendar day of
// `date` in the current locale, zone and calendar, through a fresh formatter.
platform::URL recordDateURL(platform::Date date);

}  // namespace quillan::compose
