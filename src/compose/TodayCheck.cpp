#include "compose/TodayCheck.hpp"

#include <cmath>

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::compose {

std::ptrdiff_t todayNoteCount() {
  std::ptrdiff_t count = 0;
  for (const auto& note : widgets::fetchAllNotes()) {
    const auto now = platform::Clock::now();
    const auto noteDate = platform::unwrap(note->date(), "OnThisDayWidgetExtension/ComposeButtonSmallView");
    // Most of a journal lies days away from now; only notes near it need the calendar.
    if (std::fabs(now.timeIntervalSinceReferenceDate() - noteDate.timeIntervalSinceReferenceDate()) >
        platform::kSameDayReachSeconds) {
      continue;
    }
    if (platform::Calendar::current().isDate(now, noteDate, platform::CalendarComponent::day)) ++count;
  }
  return count;
}

}  // namespace quillan::compose
