// Narrowed note reads against their oracle: the literal query (every note,
// filtered in memory). Same objects, same order, same stops.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StoreTestSupport.hpp"
#include "platform/Calendar.hpp"
#include "platform/Fatal.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "store/NoteDateFilter.hpp"

namespace quillan::store {
namespace {

using testing::contextFor;
using testing::fetchNotes;
using testing::narrowed;
using testing::TemporaryDirectory;
using Notes = std::vector<std::shared_ptr<Note>>;

constexpr std::string_view kSource = "NoteDateFilterTest";

platform::Date at(std::string_view iso) { return *platform::ISO8601::parse(iso); }

platform::Calendar calendarIn(std::string_view zone, std::string_view locale = "en_US") {
  return platform::Calendar(*platform::Locale::named(locale), *platform::TimeZone::named(zone));
}

Notes literally(ManagedObjectContext& context, const NoteDateTest& keep) {
  Notes kept;
  for (auto& note : fetchNotes(context)) {
    if (keep(note->date())) kept.push_back(note);
  }
  return kept;
}

// Notes on both sides of every edge of the day of `noon` and of the days
// around it: its start, a millisecond and a second either side, its end, and
// a day and two days away.
void writeNotesAroundDay(fixtures::JournalWriter& writer, const platform::Calendar& calendar, platform::Date noon) {
  const auto start = calendar.startOfDay(noon);
  const auto next = calendar.startOfDay(*calendar.dateByAdding(platform::CalendarComponent::day, 1, start));
  for (const auto edge : {start, next}) {
    for (const double offset : {-172800.0, -86400.0, -3600.0, -1.0, -0.001, 0.0, 0.001, 1.0, 3600.0, 86400.0}) {
      writer.addNote({.date = edge.addingTimeInterval(offset), .info = "edge"});
    }
  }
  writer.addNote({.date = noon.addingTimeInterval(-400 * 86400.0), .info = "long ago"});
}

TEST(NarrowedReads, KeepExactlyTheNotesOfTheLiteralDayTest) {
  const struct {
    const char* zone;
    const char* noon;  // a moment on the day under test
    bool integerDates;
  } days[] = {
      {"Europe/Berlin", "2026-03-29T12:00:00+02:00", false},   // 23-hour day
      {"Europe/Berlin", "2026-10-25T12:00:00+01:00", false},   // 25-hour day
      {"Europe/Berlin", "2026-10-25T12:00:00+01:00", true},    // whole seconds
      {"America/Havana", "2026-03-08T12:00:00-04:00", false},  // no midnight
      {"America/Santiago", "2026-09-06T12:00:00-03:00", false},
      {"Pacific/Apia", "2011-12-31T12:00:00+14:00", false},  // after a skipped day
      {"Pacific/Kiritimati", "2026-01-01T12:00:00+14:00", false},
      {"Pacific/Pago_Pago", "2026-01-01T12:00:00-11:00", true},
  };
  for (const auto& day : days) {
    SCOPED_TRACE(day.zone);
    const auto calendar = calendarIn(day.zone);
    const auto noon = at(day.noon);
    TemporaryDirectory directory;
    {
      fixtures::JournalLayout layout;
      layout.integerDates = day.integerDates;
      fixtures::JournalWriter writer(directory / "Quillan.sqlite", layout);
      writeNotesAroundDay(writer, calendar, noon);
    }
    auto context = contextFor(directory / "Quillan.sqlite");
    const auto start = calendar.startOfDay(noon);
    const auto next = calendar.startOfDay(*calendar.dateByAdding(platform::CalendarComponent::day, 1, start));
    for (const auto moment : {start, noon, next.addingTimeInterval(-0.001), next}) {
      const NoteDateTest sameDay = [&](const std::optional<platform::Date>& date) {
        return calendar.isDate(platform::unwrap(date, kSource), moment, platform::CalendarComponent::day);
      };
      const auto expected = literally(*context, sameDay);
      EXPECT_FALSE(expected.empty());
      EXPECT_EQ(narrowed(*context, sameDay, NoteDateWindow::aroundDayOf(moment)), expected)
          << day.zone << " at " << moment.timeIntervalSinceReferenceDate();
    }
  }
}

// The memories' test cannot be windowed: month and day in any earlier year.
TEST(NarrowedReads, AnUnwindowedTestKeepsWhatTheLiteralFilterKeeps) {
  const auto calendar = calendarIn("America/Havana", "he_IL@calendar=hebrew");
  const auto now = at("2026-03-08T12:00:00-04:00");
  TemporaryDirectory directory;
  {
    fixtures::JournalWriter writer(directory / "Quillan.sqlite");
    for (int i = 0; i < 2000; ++i) writer.addNote({.date = now.addingTimeInterval(-i * 21600.0 + 3600.0)});
  }
  auto context = contextFor(directory / "Quillan.sqlite");
  const NoteDateTest onThisDay = [&](const std::optional<platform::Date>& date) {
    const auto day = platform::unwrap(date, kSource);
    return day < now && !calendar.isDate(day, now, platform::CalendarComponent::day) &&
           calendar.component(platform::CalendarComponent::month, day) ==
               calendar.component(platform::CalendarComponent::month, now) &&
           calendar.component(platform::CalendarComponent::day, day) ==
               calendar.component(platform::CalendarComponent::day, now);
  };
  const auto expected = literally(*context, onThisDay);
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(narrowed(*context, onThisDay), expected);
}

// A scan judges the dates alone; the few notes kept are then read by primary
// key, most or all of them by a second scan. Either way: the same notes, in
// the store's order (not the dates'), with every value read.
TEST(NarrowedReads, KeptNotesAreReadWholeWhetherFewOrMany) {
  TemporaryDirectory directory;
  const auto start = at("2026-01-01T00:00:00Z");
  {
    fixtures::JournalWriter writer(directory / "Quillan.sqlite");
    for (int i = 0; i < 400; ++i) {
      writer.addNote({.date = start.addingTimeInterval((i * 37 % 400) * 3600.0), .info = "note " + std::to_string(i)});
    }
  }
  auto context = contextFor(directory / "Quillan.sqlite");
  for (const long every : {1, 3, 50, 400}) {
    const NoteDateTest keep = [&](const std::optional<platform::Date>& date) {
      const auto hours = (date->timeIntervalSinceReferenceDate() - start.timeIntervalSinceReferenceDate()) / 3600.0;
      return static_cast<long>(hours) % every == 0;
    };
    const auto expected = literally(*context, keep);
    const auto texts = testing::infos(expected);
    // The objects are the identity map's, refreshed by the read: their texts after it must be the same.
    const auto kept = narrowed(*context, keep);
    EXPECT_EQ(kept, expected) << "every " << every;
    EXPECT_EQ(testing::infos(kept), texts) << "every " << every;
    EXPECT_EQ(kept.size(), static_cast<std::size_t>((400 + every - 1) / every)) << "every " << every;
  }
}

// A note whose date is NULL, or stored as something other than a number,
// reaches the test wherever it lies, in store order and decoded as the full
// fetch decodes it; dated notes outside the window never do.
TEST(NarrowedReads, HandUndatedAndOddlyStoredDatesToTheTestWhereverTheyAre) {
  TemporaryDirectory directory;
  testing::writeOddlyDatedJournal(directory / "Quillan.sqlite");
  auto context = contextFor(directory / "Quillan.sqlite");
  const auto all = fetchNotes(*context);
  std::vector<std::optional<platform::Date>> seen, expectedSeen;
  const NoteDateTest keepAll = [&](const std::optional<platform::Date>& date) {
    seen.push_back(date);
    return true;
  };
  Notes expected;
  for (const int inside : {1, 2, 3, 4, 5, 7, 8, 10, 11}) {
    expected.push_back(all[inside]);
    expectedSeen.push_back(all[inside]->date());
  }
  EXPECT_EQ(narrowed(*context, keepAll, NoteDateWindow::aroundDayOf(testing::kMoment)), expected);
  EXPECT_EQ(seen, expectedSeen);
}

// Ranges rule some dates out unasked; on a journal small enough for one scan
// and on one whose primary keys reach far enough to be judged in two halves,
// the test is asked about the rest in store order and the same notes come back.
TEST(NarrowedReads, RangesAskAboutEveryDateTheyLeaveInOneScanOrTwoHalves) {
  const double day = 86400.0, at = testing::kMoment.timeIntervalSinceReferenceDate();
  const KeepRanges ranges({at - 1000 * day, at + 1000 * day}, {{at - 400 * day, at - 300 * day}, {at, at + day}});
  for (const std::int64_t keySpacing : {1, 50000}) {
    SCOPED_TRACE("primary keys " + std::to_string(keySpacing) + " apart");
    TemporaryDirectory directory;
    {
      fixtures::JournalWriter writer(directory / "Quillan.sqlite");
      for (int i = 0; i < 24; ++i) {
        // Back and forth across the ranges' edges and beyond their span.
        const double offsets[] = {-1500, -400, -350, -300, -2, 0, 0.5, 1, 2, 1500};
        writer.addNote({.date = testing::kMoment.addingTimeInterval(offsets[(i * 7) % 10] * day + i)});
      }
      writer.execute("UPDATE ZNOTE SET ZDATE = NULL WHERE Z_PK IN (3, 20)");
      writer.execute("UPDATE ZNOTE SET ZDATE = 'soon' WHERE Z_PK IN (5, 17)");
      writer.execute("UPDATE ZNOTE SET ZDATE = CAST(ZDATE AS INTEGER) WHERE Z_PK IN (8, 14)");
      writer.execute("UPDATE ZNOTE SET Z_PK = Z_PK * " + std::to_string(keySpacing));
    }
    auto context = contextFor(directory / "Quillan.sqlite");
    std::vector<std::optional<platform::Date>> asked;
    const NoteDateTest keepLate = [&](const std::optional<platform::Date>& date) {
      asked.push_back(date);
      return !date || date->timeIntervalSinceReferenceDate() > 0;
    };
    const auto expected = literally(*context, [&](const std::optional<platform::Date>& date) {
      return (!date || ranges.mayKeep(date->timeIntervalSinceReferenceDate())) && keepLate(date);
    });
    const auto expectedAsked = std::exchange(asked, {});
    EXPECT_EQ(narrowed(*context, keepLate, ranges), expected);
    EXPECT_EQ(asked, expectedAsked);
    EXPECT_LT(asked.size(), fetchNotes(*context).size());
  }
}

TEST(NarrowedReadDeathTest, AnUndatedNoteFarFromTheDayStopsTheProcessAsTheLiteralFilterDoes) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  TemporaryDirectory directory;
  testing::writeOddlyDatedJournal(directory / "Quillan.sqlite");
  auto context = contextFor(directory / "Quillan.sqlite");
  const auto calendar = calendarIn("UTC");
  const auto moment = testing::kMoment;
  const NoteDateTest sameDay = [&](const std::optional<platform::Date>& date) {
    return calendar.isDate(platform::unwrap(date, kSource), moment, platform::CalendarComponent::day);
  };
  const std::string report = "NoteDateFilterTest: Fatal error: Unexpectedly found nil";
  EXPECT_DEATH(literally(*context, sameDay), report);
  EXPECT_DEATH(narrowed(*context, sameDay, NoteDateWindow::aroundDayOf(moment)), report);
  EXPECT_DEATH(narrowed(*context, sameDay), report);
}

}  // namespace
}  // namespace quillan::store
