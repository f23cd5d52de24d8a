#include "memories/MemorySelection.hpp"

#include <algorithm>
#include <unordered_map>

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/Fatal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

constexpr std::string_view kMatchFormat = "MMMM dd";

platform::Date requiredDate(const store::Note& note) { return platform::unwrap(note.date(), kMemorySelectionSource); }

// Formatters are made per use on purpose: each one picks up the locale, zone
// and calendar current at that moment.
std::string monthAndDay(platform::Date date) {
  platform::DateFormatter formatter;
  formatter.setDateFormat(std::string(kMatchFormat));
  return formatter.string(date);
}

}  // namespace

NoteList fetchMemories() {
  NoteList memories;
  for (auto& note : widgets::fetchAllNotes()) {
    if (isOnThisDay(*note)) memories.push_back(std::move(note));
  }
  return memories;
}

bool isOnThisDay(const store::Note& note) {
  // The match is on the rendered text, so month and day are compared as the
  // user's calendar names them and the year never enters into it.
  if (monthAndDay(platform::Clock::now()) != monthAndDay(requiredDate(note))) return false;
  // Today's own entries share the text but are not memories.
  if (platform::Calendar::current().isDate(requiredDate(note), platform::Clock::now(),
                                           platform::CalendarComponent::day)) {
    return false;
  }
  // Same month and day, another day: a later year is not a memory.
  return requiredDate(note) < platform::Clock::now();
}

std::vector<MemoryGroup> memoryGroups() { return groupByDay(fetchMemories()); }

std::vector<MemoryGroup> groupByDay(NoteList memories) {
  std::vector<MemoryGroup> groups;
  std::unordered_map<std::string, std::size_t> groupIndexByKey;
  for (auto& note : memories) {
    const auto [slot, inserted] = groupIndexByKey.try_emplace(memoryDayKey(*note), groups.size());
    if (inserted) groups.emplace_back();
    groups[slot->second].push_back(std::move(note));
  }
  std::sort(groups.begin(), groups.end(), newerGroupFirst);
  return groups;
}

std::string memoryDayKey(const store::Note& note) {
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatterStyle::medium);
  return formatter.string(requiredDate(note));
}

bool newerGroupFirst(const MemoryGroup& a, const MemoryGroup& b) {
  return requiredDate(*a.front()) > requiredDate(*b.front());
}

}  // namespace quillan::memories
