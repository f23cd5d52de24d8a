#include "streak/NotePresence.hpp"

#include <algorithm>
#include <cmath>

#include "platform/Calendar.hpp"
#include "platform/Fatal.hpp"
#include "streak/StreakDays.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::streak {
namespace {

bool mayShareDay(platform::Date a, platform::Date b) {
  return std::fabs(a.timeIntervalSinceReferenceDate() - b.timeIntervalSinceReferenceDate()) <
         platform::kSameDayReachSeconds;
}

}  // namespace

Notes notesAround(const std::vector<platform::Date>& moments) {
  const auto [earliest, latest] = std::minmax_element(moments.begin(), moments.end());
  const store::NoteDateWindow window{store::NoteDateWindow::aroundDayOf(*earliest).lower,
                                     store::NoteDateWindow::aroundDayOf(*latest).upper};
  return widgets::fetchNotesWhere(window, [](const std::optional<platform::Date>& date) {
    platform::unwrap(date, kStreakSource);
    return true;
  });
}

bool hasNotes(platform::Date moment) { return hasNotes(notesAround({moment}), moment); }

bool hasNotes(const Notes& notes, platform::Date moment) {
  const auto calendar = platform::Calendar::current();
  // Every note is looked at, not only up to the first match, so that a note
  // without a date stops the process whatever the order of the journal.
  bool found = false;
  for (const auto& note : notes) {
    const auto noteDate = platform::unwrap(note->date(), kStreakSource);
    if (!found && mayShareDay(noteDate, moment)) {
      found = calendar.isDate(noteDate, moment, platform::CalendarComponent::day);
    }
  }
  return found;
}

}  // namespace quillan::streak
