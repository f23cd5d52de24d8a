#include <gtest/gtest.h>

#include <string>

#include "compose/TodayCheck.hpp"
#include "memories/MemorySnapshot.hpp"
#include "memories/MemorySummary.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;

// Notes around every midnight near today's date in each of the last years, in
// this calendar: many share the text of another day's note, many lie on days
// that began or ended at an odd hour.
void writeJournal(TestJournal& journal) {
  const auto calendar = platform::Calendar::current();
  const auto now = platform::Clock::now();
  int serial = 0;
  for (int year = -12; year <= 1; ++year) {
    const auto anniversary = *calendar.dateByAdding(platform::CalendarComponent::year, year, now);
    for (int day = -2; day <= 2; ++day) {
      const auto start = calendar.startOfDay(*calendar.dateByAdding(platform::CalendarComponent::day, day,
                                                                    anniversary));
      for (double offset : {-1.0, -0.001, 0.0, 0.001, 1.0, 3600.0, 43200.0, 86399.0}) {
        journal.addNote(start.addingTimeInterval(offset), "note " + std::to_string(serial++));
      }
    }
  }
}

using MemorySnapshotTest = quillan::testing::JournalTest;

TEST_F(MemorySnapshotTest, AnswersAsTheOneQuestionAtATimeFunctions) {
  quillan::testing::expectGoldenAnswers("memory_snapshots.txt", [this](const std::string& question) {
    const auto args = quillan::testing::words(question);
    journal.clear();
    ProcessEnvironment environment(args[2], args[1], args[0]);
    writeJournal(journal);
    const auto snapshot = MemorySnapshot::take();
    EXPECT_EQ(snapshot.memories(), fetchMemories()) << question;
    EXPECT_EQ(snapshot.groups(), memoryGroups()) << question;
    EXPECT_EQ(snapshot.moreCount(), moreCount()) << question;
    EXPECT_EQ(snapshot.headerDate(), headerDate()) << question;
    EXPECT_EQ(snapshot.representativeMemory(), representativeMemory()) << question;
    EXPECT_EQ(snapshot.todayNoteCount(), compose::todayNoteCount()) << question;
    return std::to_string(snapshot.groups().size()) + " groups, " + std::to_string(snapshot.moreCount()) +
           " more, header " + ProcessEnvironment::local(snapshot.headerDate()) + ", " +
           std::to_string(snapshot.todayNoteCount()) + " written today";
  });
}

TEST_F(MemorySnapshotTest, DaysBeforeTheGregorianReformKeepTheCalendarsOwnMonthAndDay) {
  // ICU's Gregorian calendars are Julian before 1582-10-15, ten days apart
  // from the proleptic calendar: a note there is a memory by its Julian date.
  for (const char* locale : {"en_US", "th_TH@calendar=buddhist"}) {
    journal.clear();
    ProcessEnvironment environment("2026-03-01T12:00:00Z", "UTC", locale);
    const auto calendar = platform::Calendar::current();
    const auto now = platform::Clock::now();
    for (int years : {-526, -444, -443, -100, -1}) {
      const auto anniversary = *calendar.dateByAdding(platform::CalendarComponent::year, years, now);
      for (int days : {-11, -10, -9, 0, 9, 10, 11}) {
        journal.addNote(*calendar.dateByAdding(platform::CalendarComponent::day, days, anniversary), "note");
      }
    }
    const auto snapshot = MemorySnapshot::take();
    EXPECT_EQ(snapshot.memories(), fetchMemories()) << locale;
    EXPECT_EQ(snapshot.memories().size(), 5u) << locale;
  }
}

TEST_F(MemorySnapshotTest, WithoutMemoriesTheHeaderIsNow) {
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  const auto snapshot = MemorySnapshot::take();
  EXPECT_TRUE(snapshot.empty());
  EXPECT_EQ(snapshot.moreCount(), -1);
  EXPECT_EQ(snapshot.headerDate(), platform::Clock::now());
}

}  // namespace
}  // namespace quillan::memories
