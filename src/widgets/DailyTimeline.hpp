#pragma once

#include <string_view>

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "widgets/Timeline.hpp"

namespace quillan::widgets {

// The start of the current local day and of the next one, by calendar
// arithmetic in Calendar::current() (a day may last 23 or 25 hours, or begin
// after a midnight that does not exist). A calendar that cannot add the day
// stops the process, reported under `source`.
struct DayBounds {
  platform::Date startOfToday;
  platform::Date startOfTomorrow;
};

DayBounds currentDayBounds(std::string_view source);

// The timeline every widget of the bundle answers with: one entry dated at the
// start of today, reloaded after the start of tomorrow.
template <typename Entry>
Timeline<Entry> dailyTimeline(std::string_view source) {
  const auto bounds = currentDayBounds(source);
  return {{Entry{bounds.startOfToday}}, TimelineReloadPolicy::after(bounds.startOfTomorrow)};
}

// The entry of a placeholder or a snapshot: dated now.
template <typename Entry>
Entry entryDatedNow() {
  return Entry{platform::Clock::now()};
}

}  // namespace quillan::widgets
