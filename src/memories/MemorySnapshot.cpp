#include "memories/MemorySnapshot.hpp"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/Fatal.hpp"
#include "platform/TimeZone.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

// The "MMMM dd" text of a date, formatted once per local day. Every calendar
// derives its fields from the local wall-clock day (UTC plus the zone's offset
// at that instant, cut at midnight), so two instants of one local day share
// month, day and year, and with them the text.
class MonthAndDayTexts {
 public:
  const std::string& text(platform::Date date) {
    const auto [slot, inserted] = texts_.try_emplace(localDay(date));
    if (inserted) {
      platform::DateFormatter formatter;
      formatter.setDateFormat("MMMM dd");
      slot->second = formatter.string(date);
    }
    return slot->second;
  }

 private:
  std::int64_t localDay(platform::Date date) const {
    // In milliseconds, as the calendars themselves cut days.
    const double localMilliseconds = date.unixMilliseconds() + 1000.0 * zone_.secondsFromGMT(date);
    return static_cast<std::int64_t>(std::floor(localMilliseconds / 86400000.0));
  }

  platform::TimeZone zone_ = platform::TimeZone::current();
  std::unordered_map<std::int64_t, std::string> texts_;
};

// isOnThisDay, step for step, with the texts from the per-day table.
bool isOnThisDay(const std::optional<platform::Date>& noteDate, MonthAndDayTexts& texts) {
  const auto date = platform::unwrap(noteDate, kMemorySelectionSource);
  if (texts.text(platform::Clock::now()) != texts.text(date)) return false;
  if (platform::Calendar::current().isDate(date, platform::Clock::now(), platform::CalendarComponent::day)) {
    return false;
  }
  return date < platform::Clock::now();
}

}  // namespace

MemorySnapshot MemorySnapshot::take() {
  MemorySnapshot snapshot;
  MonthAndDayTexts texts;
  // Every date is tested, but only the memories become objects.
  snapshot.memories_ =
      widgets::fetchNotesWhere([&texts](const std::optional<platform::Date>& date) { return isOnThisDay(date, texts); });
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
