#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "memories/MemorySelection.hpp"
#include "memories/MemorySnapshot.hpp"
#include "memories/MemorySummary.hpp"
#include "platform/Clock.hpp"
#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;
using MemorySelection = quillan::testing::JournalTest;

std::vector<std::string> texts(const NoteList& notes) {
  std::vector<std::string> result;
  for (const auto& note : notes) result.push_back(note->info().value_or("<none>"));
  return result;
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

// Memories keep the store's order. Groups are days, newest first, with the
// store's order within, so the representative memory is the first-fetched
// note of the newest day, not its earliest or latest.
TEST_F(MemorySelection, GroupsByDayNewestFirstWithTheStoresOrderWithin) {
  ProcessEnvironment environment("2026-11-16T12:00:00+01:00", "Europe/Berlin");
  journal.addNote("2026-11-16T08:00:00+01:00", "today");
  EXPECT_TRUE(memoryGroups().empty());
  EXPECT_EQ(moreCount(), -1);
  EXPECT_EQ(headerDate(), platform::Clock::now());
  journal.addNote("2023-11-16T09:00:00+01:00", "2023");
  EXPECT_EQ(moreCount(), 0);
  EXPECT_EQ(headerDate(), *platform::ISO8601::parse("2023-11-16T09:00:00+01:00"));
  journal.addNote("2025-11-16T14:00:00+01:00", "2025 afternoon");
  journal.addNote("2025-11-17T09:00:00+01:00", "tomorrow last year");
  journal.addNote("2024-11-16T09:00:00+01:00", "2024");
  journal.addNote("2025-11-16T07:00:00+01:00", "2025 morning");
  journal.addNote("2025-11-16T23:00:00+01:00", "2025 night");

  EXPECT_EQ(texts(fetchMemories()),
            (std::vector<std::string>{"2023", "2025 afternoon", "2024", "2025 morning", "2025 night"}));
  const auto groups = memoryGroups();
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(texts(groups[0]), (std::vector<std::string>{"2025 afternoon", "2025 morning", "2025 night"}));
  EXPECT_EQ(texts(groups[1]), std::vector<std::string>{"2024"});
  EXPECT_EQ(texts(groups[2]), std::vector<std::string>{"2023"});
  EXPECT_EQ(representativeMemory()->info(), "2025 afternoon");
  EXPECT_EQ(moreCount(), 4);
  EXPECT_EQ(headerDate(), *platform::ISO8601::parse("2025-11-16T14:00:00+01:00"));
  EXPECT_FALSE(newerGroupFirst(groups[0], groups[0]));
}

// Grouping is by the local day: two notes of one UTC day fall into two local
// days, and only one of them is on this day.
TEST_F(MemorySelection, DayKeysAreLocalDays) {
  ProcessEnvironment environment("2026-11-16T12:00:00-05:00", "America/New_York");
  journal.addNote("2025-11-16T01:00:00Z", "15 Nov in New York");
  journal.addNote("2025-11-16T23:00:00Z", "16 Nov in New York");
  journal.addNote("2025-11-17T04:30:00Z", "16 Nov, late, in New York");
  const auto groups = memoryGroups();
  ASSERT_EQ(groups.size(), 1u);
  EXPECT_EQ(texts(groups[0]), (std::vector<std::string>{"16 Nov in New York", "16 Nov, late, in New York"}));
  EXPECT_EQ(memoryDayKey(*groups[0][0]), "Nov 16, 2025");
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
