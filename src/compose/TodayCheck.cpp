#include "compose/TodayCheck.hpp"

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::compose {

std::ptrdiff_t todayNoteCount() {
  std::ptrdiff_t count = 0;
  for (const auto& note : widgets::fetchAllNotes()) {
    const auto calendar = platform::Calendar::current();
    const auto now = platform::Clock::now();
    const auto noteDate = platform::unwrap(note->date(), "OnThisDayWidgetExtension/ComposeButtonSmallView");
    if (calendar.isDate(now, noteDate, platform::CalendarComponent::day)) ++count;
  }
  return count;
}

}  // namespace quillan::compose
