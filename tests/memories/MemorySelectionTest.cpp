#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "memories/MemorySelection.hpp"
#include "memories/MemorySummary.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/ISO8601.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;

class MemorySelection : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
  TestJournal& journal = TestJournal::shared();
};

std::vector<std::string> texts(const NoteList& notes) {
  std::vector<std::string> result;
  for (const auto& note : notes) result.push_back(note->info().value_or("<none>"));
  return result;
}

struct SelectionCase {
  const char* locale;
  const char* zone;
  const char* now;
  const char* note;
  bool isMemory;
  const char* why;
};

// Month and day are those the user's zone and calendar give the instant; the
// year never counts, today never counts, and a later year is not a memory.
constexpr SelectionCase kSelections[] = {
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2025-11-16T23:30:00Z", true, "last year, a later clock time"},
    {"en_US", "Europe/Berlin", "2026-11-16T12:00:00Z", "2025-11-16T23:30:00Z", false,
     "the same instant is 17 November in Berlin"},
    {"en_US", "Europe/Berlin", "2026-11-16T12:00:00Z", "2025-11-15T23:30:00Z", true,
     "15 November in UTC, 16 November in Berlin"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2025-11-15T23:30:00Z", false, "15 November in UTC"},
    {"en_US", "America/Los_Angeles", "2026-11-17T06:00:00Z", "2020-11-16T20:00:00-08:00", true,
     "now is still 16 November in Los Angeles"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2026-11-16T00:00:00Z", false, "earlier today"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2026-11-16T23:59:59Z", false, "later today"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2027-11-16T08:00:00Z", false, "a later year"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2016-11-16T12:00:00Z", true, "ten years ago"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2025-11-06T12:00:00Z", false, "another day of the month"},
    {"en_US", "UTC", "2026-11-16T12:00:00Z", "2025-10-16T12:00:00Z", false, "another month"},
    {"de_DE", "Europe/Berlin", "2026-11-16T12:00:00+01:00", "2025-11-16T21:00:00+01:00", true, "German names"},
    {"de_DE", "Europe/Berlin", "2026-11-16T12:00:00+01:00", "2026-11-16T21:00:00+01:00", false, "German, today"},
    {"ja_JP@calendar=japanese", "Asia/Tokyo", "2026-11-16T12:00:00+09:00", "2018-11-16T12:00:00+09:00", true,
     "an earlier era (Heisei)"},
    {"ja_JP@calendar=japanese", "Asia/Tokyo", "2026-11-16T12:00:00+09:00", "2026-11-16T08:00:00+09:00", false,
     "Japanese calendar, today"},
    {"ja_JP@calendar=japanese", "Asia/Tokyo", "2026-11-16T12:00:00+09:00", "2025-11-15T23:00:00+09:00", false,
     "Japanese calendar, the day before"},
    {"th_TH@calendar=buddhist", "Asia/Bangkok", "2026-11-16T12:00:00+07:00", "2025-11-16T18:00:00+07:00", true,
     "Buddhist calendar"},
    {"th_TH@calendar=buddhist", "Asia/Bangkok", "2026-11-16T12:00:00+07:00", "2027-11-16T06:00:00+07:00", false,
     "Buddhist calendar, a later year"},
    {"th_TH@calendar=buddhist", "Asia/Bangkok", "2026-11-16T12:00:00+07:00", "2025-11-16T00:30:00+08:00", false,
     "23:30 on 15 November in Bangkok"},
    // 29 February matches only earlier 29 Februaries.
    {"en_US", "UTC", "2025-02-28T12:00:00Z", "2024-02-29T12:00:00Z", false, "28 Feb of a common year"},
    {"en_US", "UTC", "2028-02-29T12:00:00Z", "2024-02-29T12:00:00Z", true, "29 Feb four years on"},
    {"en_US", "UTC", "2028-02-29T12:00:00Z", "2027-02-28T12:00:00Z", false, "29 Feb does not take 28 Feb"},
    {"en_US", "UTC", "2028-02-28T12:00:00Z", "2024-02-29T12:00:00Z", false, "28 Feb of a leap year"},
    {"en_US", "UTC", "2028-02-28T12:00:00Z", "2027-02-28T12:00:00Z", true, "28 Feb of a leap year, last year"},
    {"en_US", "UTC", "2025-03-01T12:00:00Z", "2024-02-29T12:00:00Z", false, "1 March after a leap day"},
};

TEST_F(MemorySelection, MatchesTodaysMonthAndDayInEarlierYearsOnly) {
  for (const auto& selection : kSelections) {
    journal.clear();
    ProcessEnvironment environment(selection.now, selection.zone, selection.locale);
    journal.addNote(selection.note, selection.why);
    EXPECT_EQ(fetchMemories().size(), selection.isMemory ? 1u : 0u)
        << selection.why << ": " << selection.locale << " " << selection.zone << " now " << selection.now << ", note "
        << selection.note;
  }
}

// Month and day are the calendar's own: in the Hebrew calendar a year ago is
// not the same Gregorian date, and the Gregorian anniversary is no memory.
TEST_F(MemorySelection, TheCalendarNotGregorianDatesDecidesTheDay) {
  ProcessEnvironment environment("2026-11-16T12:00:00+02:00", "Asia/Jerusalem", "he_IL@calendar=hebrew");
  const auto now = platform::Clock::now();
  const auto hebrewYearAgo = *platform::Calendar::current().dateByAdding(platform::CalendarComponent::year, -1, now);
  journal.addNote(hebrewYearAgo, std::string("hebrew anniversary"));
  journal.addNote(std::string("2025-11-16T12:00:00+02:00"), std::string("gregorian anniversary"));
  EXPECT_EQ(texts(fetchMemories()), std::vector<std::string>{"hebrew anniversary"});
  EXPECT_NE(ProcessEnvironment::local(hebrewYearAgo).substr(0, 10), "2025-11-16");
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

// A note without a date is a broken invariant wherever selection meets it.
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
}

}  // namespace
}  // namespace quillan::memories
