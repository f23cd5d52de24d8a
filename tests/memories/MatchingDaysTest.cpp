// The ranges the memories' read passes over the rest of the journal with,
// against the rule they stand for: a date may be kept only when its month and
// day read as today's, or counted as today's only within a day or two of now.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "memories/MatchingDays.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/ISO8601.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::memories {
namespace {

using quillan::testing::ProcessEnvironment;

// Instants of a local day beginning at `start` and ending at `next`: its
// edges to the millisecond and a few hours into it.
std::vector<platform::Date> instantsOfDay(platform::Date start, platform::Date next) {
  std::vector<platform::Date> instants;
  for (const double offset : {0.0, 0.001, 3600.0, 43200.0}) instants.push_back(start.addingTimeInterval(offset));
  instants.push_back(next.addingTimeInterval(-0.001));
  instants.push_back(next.addingTimeInterval(-1e-6));
  return instants;
}

TEST(MatchingDays, KeepEveryDateOfTodaysMonthAndDayOrNearNowAndPassOverTheRest) {
  const struct {
    const char* zone;
    const char* locale;
    const char* now;
  } cases[] = {
      {"Europe/Berlin", "en_US", "2026-03-29T12:00:00+02:00"},        // a 23-hour day
      {"Europe/Berlin", "de_DE", "2026-10-25T00:30:00+02:00"},        // a 25-hour day, before its second 2 a.m.
      {"America/Sao_Paulo", "pt_BR", "2018-11-04T01:00:00-02:00"},    // a day that began at 1 a.m.
      {"America/Sao_Paulo", "pt_BR", "2019-02-16T23:30:00-03:00"},    // a day with two 11 p.m.s
      {"Pacific/Apia", "en_US", "2011-12-31T00:10:00+14:00"},         // the day after a skipped one
      {"Pacific/Apia", "en_US", "2012-12-30T12:00:00+14:00"},         // its date, a year later
      {"Australia/Lord_Howe", "en_AU", "2026-04-05T01:45:00+11:00"},  // half an hour put back
      {"Australia/Lord_Howe", "en_AU", "2024-02-29T12:00:00+11:00"},  // Feb 29
      {"UTC", "ja_JP@calendar=japanese", "2028-02-29T23:59:59Z"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.zone) + " " + c.locale + " " + c.now);
    ProcessEnvironment environment(c.now, c.zone, c.locale);
    const auto now = platform::Clock::now();
    MonthAndDayTexts texts;
    const auto ranges = matchingDays(now, texts);
    ASSERT_TRUE(ranges.has_value());
    const auto calendar = platform::Calendar::current();
    platform::DateFormatter formatter;
    formatter.setDateFormat("MMMM dd");
    const auto todayText = formatter.string(now);
    int instants = 0, kept = 0;
    auto start = calendar.startOfDay(*calendar.dateByAdding(platform::CalendarComponent::year, -6, now));
    const auto end = *calendar.dateByAdding(platform::CalendarComponent::year, 2, now);
    while (start < end) {
      const auto next = calendar.startOfDay(*calendar.dateByAdding(platform::CalendarComponent::day, 1, start));
      for (const auto instant : instantsOfDay(start, next)) {
        const bool mayKeep = ranges->mayKeep(instant.timeIntervalSinceReferenceDate());
        const bool nearNow = std::fabs(instant.timeIntervalSinceReferenceDate() -
                                       now.timeIntervalSinceReferenceDate()) < platform::kSameDayReachSeconds;
        if (formatter.string(instant) == todayText || nearNow) {
          EXPECT_TRUE(mayKeep) << platform::ISO8601::format(instant, platform::TimeZone::current());
        }
        ++instants;
        kept += mayKeep ? 1 : 0;
      }
      start = next;
    }
    // Each of those eight years keeps a day and its neighbours, or none.
    EXPECT_LT(kept, instants / 50);
  }
}

TEST(MatchingDays, LeaveDatesFarOutsideTheCenturiesAroundNowToTheTest) {
  ProcessEnvironment environment("2026-05-09T16:53:20Z", "Europe/Berlin");
  MonthAndDayTexts texts;
  const auto ranges = matchingDays(platform::Clock::now(), texts);
  ASSERT_TRUE(ranges.has_value());
  for (const char* far :
       {"0001-05-20T00:00:00Z", "1582-10-10T00:00:00Z", "1700-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
    EXPECT_TRUE(ranges->mayKeep(platform::ISO8601::parse(far)->timeIntervalSinceReferenceDate())) << far;
  }
}

// A lunar calendar's month and day fall on another Gregorian day each year.
TEST(MatchingDays, NoneWhereMonthsAreNotTheGregorianOnes) {
  for (const char* locale : {"he_IL@calendar=hebrew", "ar_SA@calendar=islamic-umalqura", "zh_CN@calendar=chinese"}) {
    ProcessEnvironment environment("2026-05-09T16:53:20Z", "Asia/Tokyo", locale);
    MonthAndDayTexts texts;
    EXPECT_FALSE(matchingDays(platform::Clock::now(), texts).has_value()) << locale;
  }
}

}  // namespace
}  // namespace quillan::memories
