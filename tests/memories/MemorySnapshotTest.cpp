#include <gtest/gtest.h>

#include <string>

#include "compose/TodayCheck.hpp"
#include "memories/MemorySnapshot.hpp"
#include "memories/MemorySummary.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/ISO8601.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;

struct Setting {
  const char* locale;
  const char* zone;
  const char* now;
};

// Zones with daylight-saving days, midnights that do not exist, half-hour
// daylight saving, a skipped day (Samoa's 2011-12-30), offsets of +14 and -11,
// calendars whose months are not Gregorian ones.
constexpr Setting kSettings[] = {
    {"en_US", "Europe/Berlin", "2026-03-29T12:00:00+02:00"},
    {"en_US", "America/Sao_Paulo", "2018-11-04T12:00:00-02:00"},
    {"de_DE", "America/Havana", "2026-03-08T09:00:00-04:00"},
    {"en_AU", "Australia/Lord_Howe", "2026-10-04T12:00:00+11:00"},
    {"en_US", "Pacific/Apia", "2012-12-30T12:00:00+14:00"},
    {"en_US", "Pacific/Kiritimati", "2026-11-16T00:30:00+14:00"},
    {"en_US", "Pacific/Pago_Pago", "2026-11-16T23:59:00-11:00"},
    {"ja_JP@calendar=japanese", "Asia/Tokyo", "2026-02-28T23:00:00+09:00"},
    {"th_TH@calendar=buddhist", "Asia/Bangkok", "2028-02-29T06:00:00+07:00"},
    {"he_IL@calendar=hebrew", "Asia/Jerusalem", "2026-03-20T12:00:00+02:00"},
    {"ar_SA@calendar=islamic-umalqura", "Asia/Riyadh", "2026-11-16T12:00:00+03:00"},
};

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

TEST(MemorySnapshot, AnswersAsTheOneQuestionAtATimeFunctions) {
  auto& journal = TestJournal::shared();
  for (const auto& setting : kSettings) {
    journal.clear();
    ProcessEnvironment environment(setting.now, setting.zone, setting.locale);
    writeJournal(journal);
    const auto snapshot = MemorySnapshot::take();
    EXPECT_EQ(snapshot.memories(), fetchMemories()) << setting.locale << " " << setting.zone;
    EXPECT_EQ(snapshot.groups(), memoryGroups()) << setting.locale << " " << setting.zone;
    EXPECT_GE(snapshot.groups().size(), 3u) << setting.locale << " " << setting.zone;
    EXPECT_EQ(snapshot.moreCount(), moreCount());
    EXPECT_EQ(snapshot.headerDate(), headerDate());
    EXPECT_EQ(snapshot.representativeMemory(), representativeMemory());
    EXPECT_EQ(snapshot.todayNoteCount(), compose::todayNoteCount()) << setting.locale << " " << setting.zone;
    EXPECT_GT(snapshot.todayNoteCount(), 0) << setting.locale << " " << setting.zone;
  }
}

TEST(MemorySnapshot, DaysBeforeTheGregorianReformKeepTheCalendarsOwnMonthAndDay) {
  // ICU's Gregorian calendars are Julian before 1582-10-15, ten days apart
  // from the proleptic calendar: a note there is a memory by its Julian date.
  auto& journal = TestJournal::shared();
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

TEST(MemorySnapshot, WithoutMemoriesTheHeaderIsNow) {
  TestJournal::shared().clear();
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  const auto snapshot = MemorySnapshot::take();
  EXPECT_TRUE(snapshot.empty());
  EXPECT_EQ(snapshot.moreCount(), -1);
  EXPECT_EQ(snapshot.headerDate(), platform::Clock::now());
}

TEST(MemorySnapshotDeathTest, ANoteWithoutADateStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  TestJournal::shared().clear();
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  TestJournal::shared().addNote(std::optional<platform::Date>{}, std::string("undated"));
  EXPECT_DEATH(MemorySnapshot::take(), "OnThisDayWidgetExtension/MemorySelection: Fatal error: Unexpectedly found nil");
  TestJournal::shared().clear();
  EXPECT_DEATH(MemorySnapshot::take().representativeMemory(),
               "OnThisDayWidgetExtension/MemorySelection: Fatal error: Unexpectedly found nil");
}

}  // namespace
}  // namespace quillan::memories
