#include "widgets/DailyTimeline.hpp"

#include "platform/Fatal.hpp"

namespace quillan::widgets {

DayBounds currentDayBounds(std::string_view source) {
  const auto calendar = platform::Calendar::current();
  const auto startOfToday = calendar.startOfDay(platform::Clock::now());
  // The day is added to the start of today, not to now. Calendar arithmetic
  // keeps the clock time, so on a day that began after a missing midnight
  // (01:00 in Sao Paulo on 2018-11-04) the sum lands at 01:00 tomorrow; the
  // start of that day is where the next day really begins.
  const auto dayLater = platform::unwrap(calendar.dateByAdding(platform::CalendarComponent::day, 1, startOfToday),
                                         source);
  return {startOfToday, calendar.startOfDay(dayLater)};
}

}  // namespace quillan::widgets
