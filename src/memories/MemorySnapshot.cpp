#include "memories/MemorySnapshot.hpp"

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Calendar.hpp"
#include "platform/CivilDays.hpp"
#include "platform/Clock.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/Fatal.hpp"
#include "platform/TimeZone.hpp"
#include "platform/ZoneOffsetTable.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

// The "MMMM dd" text of a date, formatted once per local day (or once per
// month and day where that is the same, below). Every calendar
// derives its fields from the local wall-clock day (UTC plus the zone's offset
// at that instant, cut at midnight), so two instants of one local day share
// month, day and year, and with them the text. The offsets come from a table
// of the zone's transitions: ICU is asked once per stretch, not per note.
class MonthAndDayTexts {
 public:
  const std::string& text(platform::Date date) {
    const auto day = localDay(date);
    // A journal's notes come mostly in date order, several to a day.
    if (day == lastDay_ && lastText_) return *lastText_;
    auto& slot = sharesGregorianMonthAndDay(day) ? byMonthAndDay_[monthAndDayIndex(day)] : byDay_[day];
    if (!slot) {
      platform::DateFormatter formatter;
      formatter.setDateFormat("MMMM dd");
      slot = formatter.string(date);
    }
    lastDay_ = day;
    lastText_ = &*slot;
    return *slot;
  }

 private:
  // 1583-01-01: before it ICU's Gregorian calendars count Julian days.
  static constexpr std::int64_t kFirstWholeGregorianYearDay = -141349;

  // In the calendars whose months and days are the Gregorian ones, the text
  // of a day depends on its month and day alone, so it is formatted once per
  // month and day (at most 366 times) rather than once per day of the journal.
  bool sharesGregorianMonthAndDay(std::int64_t day) const {
    return gregorianMonths_ && day >= kFirstWholeGregorianYearDay;
  }

  static std::size_t monthAndDayIndex(std::int64_t day) {
    const auto civil = platform::civilFromDays(day);
    return (civil.month - 1) * 31 + (civil.day - 1);
  }

  static bool hasGregorianMonths(const std::string& calendar) {
    for (const char* gregorian : {"gregorian", "iso8601", "japanese", "buddhist", "roc"}) {
      if (calendar == gregorian) return true;
    }
    return false;
  }

  std::int64_t localDay(platform::Date date) {
    // In milliseconds, as the calendars themselves cut days.
    const double localMilliseconds = date.unixMilliseconds() + 1000.0 * offsets_.secondsFromGMT(date);
    return static_cast<std::int64_t>(std::floor(localMilliseconds / 86400000.0));
  }

  platform::ZoneOffsetTable offsets_{platform::TimeZone::current()};
  bool gregorianMonths_ = hasGregorianMonths(platform::Calendar::current().identifier());
  std::array<std::optional<std::string>, 12 * 31> byMonthAndDay_;
  // Node-based: a text's address stays put as days are added.
  std::unordered_map<std::int64_t, std::optional<std::string>> byDay_;
  std::int64_t lastDay_ = 0;
  const std::string* lastText_ = nullptr;
};

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
  // Every date is tested, but only the memories become objects.
  snapshot.memories_ = widgets::fetchNotesWhere([&tests](const std::optional<platform::Date>& date) {
    return tests.keepsMemory(date);
  });
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
