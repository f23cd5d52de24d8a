#include "widgets/DailyTimeline.hpp"

#include "platform/Fatal.hpp"

namespace quillan::widgets {

DayBounds currentDayBounds(std::string_view source) {
  const auto calendar = platform::Calendar::current();
  const auto startOfToday = calendar.startOfDay(platform::Clock::now());
  // The day is added to the start of today, not to now.
  const auto startOfTomorrow = platform::unwrap(
      calendar.dateByAdding(platform::CalendarComponent::day, 1, startOfToday), source);
  return {startOfToday, startOfTomorrow};
}

}  // namespace quillan::widgets
