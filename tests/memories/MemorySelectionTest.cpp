#include <gtest/gtest.h>

#include <string>

#include "memories/MemorySelection.hpp"
#include "memories/MemorySnapshot.hpp"
#include "memories/MemorySummary.hpp"
#include "platform/Clock.hpp"
#include "support/GoldenFile.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;
using MemorySelection = quillan::testing::JournalTest;

// The notes' labels, each after a space.
std::string labels(const NoteList& notes) {
  std::string text;
  for (const auto& note : notes) text += " " + note->info().value_or("<none>");
  return text;
}

TEST_F(MemorySelection, MatchesTodaysMonthAndDayInEarlierYearsOnly) {
  quillan::testing::expectGoldenAnswers("memory_selection.txt", [this](const std::string& question) {
    const auto args = quillan::testing::words(question);
    journal.clear();
    ProcessEnvironment environment(args[2], args[1], args[0]);
    journal.addNote(args[3], "note");
    return fetchMemories().empty() ? "no memory" : "memory";
  });
}

// Memories keep the store's order. Groups are local days, newest first, with
// the store's order within, so the representative memory is the first-fetched
// note of the newest day, not its earliest or latest: LOCALE ZONE NOW NOTE...
// => the memories and groups by each note's place in the journal, the
// representative one with its day's key, how many more there are and the header's date.
TEST_F(MemorySelection, GroupsByLocalDayNewestFirstWithTheStoresOrderWithin) {
  quillan::testing::expectGoldenAnswers("memory_groups.txt", [this](const std::string& question) {
    const auto args = quillan::testing::words(question);
    journal.clear();
    ProcessEnvironment environment(args[2], args[1], args[0]);
    for (std::size_t note = 3; note < args.size(); ++note) journal.addNote(args[note], std::to_string(note - 2));
    std::string answer = "memories" + labels(fetchMemories()) + "; groups";
    for (const auto& group : memoryGroups()) {
      EXPECT_FALSE(newerGroupFirst(group, group));
      answer += " [" + labels(group).substr(1) + "]";
    }
    if (!fetchMemories().empty()) {
      const auto first = representativeMemory();
      answer += "; first " + first->info().value_or("") + " (" + memoryDayKey(*first) + ")";
    }
    return answer + "; " + std::to_string(moreCount()) + " more, header " + ProcessEnvironment::local(headerDate());
  });
}

using MemorySelectionDeathTest = MemorySelection;

// A note without a date is a broken invariant wherever selection meets it,
// and a snapshot without memories has no representative one.
TEST_F(MemorySelectionDeathTest, ANoteWithoutADateStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  journal.addNote(std::optional<platform::Date>{}, std::string("undated"));
  const auto notes = widgets::fetchAllNotes();
  ASSERT_EQ(notes.size(), 1u);
  const std::string report =
      "OnThisDayWidgetExtension/MemorySelection: Fatal error: Unexpectedly found nil while unwrapping an "
      "Optional value";
  EXPECT_DEATH(fetchMemories(), report);
  EXPECT_DEATH(isOnThisDay(*notes[0]), report);
  EXPECT_DEATH(memoryDayKey(*notes[0]), report);
  EXPECT_DEATH(newerGroupFirst(MemoryGroup{notes[0]}, MemoryGroup{notes[0]}), report);
  EXPECT_DEATH(MemorySnapshot::take(), report);
  journal.clear();
  EXPECT_DEATH(MemorySnapshot::take().representativeMemory(), report);
}

}  // namespace
}  // namespace quillan::memories
