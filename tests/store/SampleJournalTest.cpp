#include <gtest/gtest.h>

#include "JournalDescription.hpp"
#include "fixtures/SampleJournal.hpp"
#include "platform/ISO8601.hpp"

namespace quillan::store {
namespace {

using namespace testing;

// Counts notes per day by the local calendar the journal was written for: in
// New York just after daylight saving began, and in Auckland late at night.
TEST(SampleJournal, HasMemoriesAStreakGapAndAnEmptyToday) {
  const std::pair<const char*, const char*> zonesAndNows[] = {{"America/New_York", "2026-03-09T00:30:00-04:00"},
                                                              {"Pacific/Auckland", "2026-07-15T23:50:00+12:00"}};
  for (const auto& [zone, nowText] : zonesAndNows) {
    SCOPED_TRACE(zone);
    const platform::Calendar calendar(*platform::Locale::named("en_US"), *platform::TimeZone::named(zone));
    const auto now = *platform::ISO8601::parse(nowText);
    TemporaryDirectory directory;
    const auto path = fixtures::SampleJournal::write(directory.path(), now, calendar, 7);
    auto notes = fetchNotes(*contextFor(path));
    ASSERT_GT(notes.size(), 500u);
    auto countOn = [&](platform::Date day) {
      return std::count_if(notes.begin(), notes.end(), [&](const auto& note) {
        return calendar.isDate(*note->date(), day, platform::CalendarComponent::day);
      });
    };
    EXPECT_EQ(countOn(now), 0);
    for (int back : {1, 2, 4}) {
      EXPECT_EQ(countOn(*calendar.dateByAdding(platform::CalendarComponent::day, -back, now)), 1) << back;
    }
    EXPECT_EQ(countOn(*calendar.dateByAdding(platform::CalendarComponent::day, -3, now)), 0);
    for (int years : {1, 2, 3, 4}) {
      EXPECT_EQ(countOn(*calendar.dateByAdding(platform::CalendarComponent::year, -years, now)), years == 2 ? 2 : 1)
          << years;
    }
  }
}

TEST(SampleJournal, IsDeterministicForASeedAndNow) {
  const platform::Calendar calendar(*platform::Locale::named("en_US"), *platform::TimeZone::named("UTC"));
  const auto now = *platform::ISO8601::parse("2026-05-01T12:00:00Z");
  TemporaryDirectory a, b, c;
  const auto read = [&](TemporaryDirectory& folder, int seed) {
    return describeJournal(*contextFor(fixtures::SampleJournal::write(folder.path(), now, calendar, seed)));
  };
  const auto first = read(a, 1);
  EXPECT_EQ(read(b, 1), first);
  EXPECT_NE(read(c, 2), first);
}

}  // namespace
}  // namespace quillan::store
