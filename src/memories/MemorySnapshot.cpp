#include "memories/MemorySnapshot.hpp"

#include <cmath>
#include <optional>
#include <string>

#include "memories/MatchingDays.hpp"
#include "memories/MonthAndDayTexts.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

// The questions one read of the journal answers for a view: isOnThisDay, step
// for step, with the texts from the per-day table, and the compose button's
// today check (TodayCheck.cpp) on the same dates. The clock and calendar are
// taken once for the read.
class JournalDayTests {
 public:
  bool keepsMemory(const std::optional<platform::Date>& noteDate) {
    const auto date = platform::unwrap(noteDate, kMemorySelectionSource);
    if (isOnToday(date)) ++todayCount_;
    if (nowText_ != texts_.text(date)) return false;
    if (calendar_.isDate(date, now_, platform::CalendarComponent::day)) return false;
    return date < now_;
  }

  std::ptrdiff_t todayCount() const { return todayCount_; }

  // The dates keepsMemory may keep or count, as the store can pass over the rest.
  std::optional<store::KeepRanges> keepRanges() { return matchingDays(now_, texts_); }

 private:
  bool isOnToday(platform::Date date) const {
    // Farther than a day can stretch, no calendar needs asking.
    const double apart = date.timeIntervalSinceReferenceDate() - now_.timeIntervalSinceReferenceDate();
    return std::fabs(apart) < platform::kSameDayReachSeconds &&
           calendar_.isDate(now_, date, platform::CalendarComponent::day);
  }

  platform::Date now_ = platform::Clock::now();
  platform::Calendar calendar_ = platform::Calendar::current();
  MonthAndDayTexts texts_;
  std::string nowText_ = texts_.text(now_);
  std::ptrdiff_t todayCount_ = 0;
};

}  // namespace

MemorySnapshot MemorySnapshot::take() {
  MemorySnapshot snapshot;
  JournalDayTests tests;
  // Every date the ranges leave is tested, but only the memories become objects.
  const store::NoteDateTest keep = [&tests](const std::optional<platform::Date>& date) {
    return tests.keepsMemory(date);
  };
  const auto ranges = tests.keepRanges();
  snapshot.memories_ = ranges ? widgets::fetchNotesWhere(*ranges, keep) : widgets::fetchNotesWhere(keep);
  snapshot.todayNoteCount_ = tests.todayCount();
  snapshot.groups_ = groupByDay(snapshot.memories_);
  return snapshot;
}

std::shared_ptr<store::Note> MemorySnapshot::representativeMemory() const {
  if (groups_.empty() || groups_.front().empty()) {
    platform::fatalError(kMemorySelectionSource, platform::kUnexpectedlyFoundNil);
  }
  return groups_.front().front();
}

platform::Date MemorySnapshot::headerDate() const {
  if (groups_.empty()) return platform::Clock::now();
  return groups_.front().front()->date().value_or(platform::Clock::now());
}

}  // namespace quillan::memories
