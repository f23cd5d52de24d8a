#pragma once

// Memories: the notes written on today's calendar day in earlier years. Every
// call reads the journal afresh and the clock, calendar, locale and zone as
// they are at that moment; nothing is kept between calls.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Note.hpp"

namespace quillan::memories {

using NoteList = std::vector<std::shared_ptr<store::Note>>;
using MemoryGroup = NoteList;

inline constexpr std::string_view kMemorySelectionSource = "OnThisDayWidgetExtension/MemorySelection";

// Every note of the journal that isOnThisDay accepts, in the store's order.
// A failed fetch is no memories.
NoteList fetchMemories();

// Whether `note` was written on today's month and day (as the current locale,
// zone and calendar spell them) in an earlier year. A note without a date
// stops the process.
bool isOnThisDay(const store::Note& note);

// The memories grouped by day, newest day first; within a day, store order.
std::vector<MemoryGroup> memoryGroups();

// `memories` grouped as memoryGroups() groups them: by day, newest day first.
std::vector<MemoryGroup> groupByDay(NoteList memories);

// The day a note belongs to: its date in the medium date style. A note
// without a date stops the process.
std::string memoryDayKey(const store::Note& note);

// Orders groups by the date of their first note, later first. A first note
// without a date stops the process.
bool newerGroupFirst(const MemoryGroup& a, const MemoryGroup& b);

}  // namespace quillan::memories
