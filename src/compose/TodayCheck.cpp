#include "compose/TodayCheck.hpp"

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::compose {

std::ptrdiff_t todayNoteCount() {
  // Only notes near today can lie on it; the test still sees every absent date.
  const auto window = store::NoteDateWindow::aroundDayOf(platform::Clock::now());
  const auto today = widgets::fetchNotesWhere(window, [](const std::optional<platform::Date>& date) {
    // Calendar and clock are read afresh for every note.
    const auto calendar = platform::Calendar::current();
    const auto now = platform::Clock::now();
    const auto noteDate = platform::unwrap(date, "OnThisDayWidgetExtension/ComposeButtonSmallView");
    return calendar.isDate(now, noteDate, platform::CalendarComponent::day);
  });
  return static_cast<std::ptrdiff_t>(today.size());
}

}  // namespace quillan::compose
