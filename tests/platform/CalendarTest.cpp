#include <gtest/gtest.h>

#include "platform/Calendar.hpp"
#include "platform/ISO8601.hpp"

namespace quillan::platform {
namespace {

Date at(const char* iso) { return ISO8601::parse(iso).value(); }

Calendar calendar(const char* locale, const char* zone) {
  return Calendar(Locale::named(locale).value(), TimeZone::named(zone).value());
}

std::string local(Date date, const Calendar& in) { return ISO8601::format(date, in.timeZone()); }

struct StartOfDayCase {
  const char* zone;
  const char* instant;
  const char* expectedStart;
};

TEST(CalendarStartOfDay, IsMidnightOrTheFirstInstantAfterAMissingMidnight) {
  const StartOfDayCase cases[] = {
      {"Europe/Berlin", "2026-11-21T15:30:00+01:00", "2026-11-21T00:00:00+01:00"},
      {"Europe/Berlin", "2026-11-21T23:59:59+01:00", "2026-11-21T00:00:00+01:00"},
      {"Europe/Berlin", "2026-11-21T00:00:00+01:00", "2026-11-21T00:00:00+01:00"},
      {"Asia/Tokyo", "2026-11-21T23:30:00Z", "2026-11-22T00:00:00+09:00"},
      {"America/Los_Angeles", "2026-11-22T07:59:59Z", "2026-11-21T00:00:00-08:00"},
      // Midnight does not exist on these days: clocks go from 23:59:59 to 01:00.
      {"America/Sao_Paulo", "2018-11-04T12:00:00-02:00", "2018-11-04T01:00:00-02:00"},
      {"America/Sao_Paulo", "2018-11-04T01:00:00-02:00", "2018-11-04T01:00:00-02:00"},
      {"America/Havana", "2026-03-08T18:00:00-04:00", "2026-03-08T01:00:00-04:00"},
      {"America/Santiago", "2026-09-06T09:00:00-03:00", "2026-09-06T01:00:00-03:00"},
      // Midnight happens twice when clocks go back at 00:00: the first one counts.
      {"America/Sao_Paulo", "2019-02-16T23:30:00-03:00", "2019-02-16T00:00:00-02:00"},
  };
  for (const auto& c : cases) {
    const auto cal = calendar("en_US", c.zone);
    EXPECT_EQ(local(cal.startOfDay(at(c.instant)), cal), c.expectedStart) << c.zone << " " << c.instant;
  }
}

TEST(CalendarStartOfDay, DaysAroundDaylightSavingChangesLast23And25Hours) {
  struct Case {
    const char* zone;
    const char* day;
    double hours;
  };
  const Case cases[] = {
      {"America/New_York", "2026-03-08T12:00:00-04:00", 23},  {"America/New_York", "2026-11-01T12:00:00-05:00", 25},
      {"Europe/Berlin", "2026-03-29T12:00:00+02:00", 23},     {"Europe/Berlin", "2026-10-25T12:00:00+01:00", 25},
      {"America/Sao_Paulo", "2018-11-04T12:00:00-02:00", 23}, {"Asia/Tokyo", "2026-03-08T12:00:00+09:00", 24},
  };
  for (const auto& c : cases) {
    const auto cal = calendar("en_US", c.zone);
    const auto noon = at(c.day);
    const auto start = cal.startOfDay(noon);
    const auto tomorrow = cal.startOfDay(cal.dateByAdding(CalendarComponent::day, 1, noon).value());
    EXPECT_DOUBLE_EQ(tomorrow.timeIntervalSinceReferenceDate() - start.timeIntervalSinceReferenceDate(), c.hours * 3600)
        << c.zone << " " << c.day;
  }
}

TEST(CalendarAdding, DaysKeepTheWallClockTimeAcrossDaylightSavingChanges) {
  struct Case {
    const char* zone;
    const char* from;
    std::int64_t days;
    const char* expected;
  };
  const Case cases[] = {
      {"America/New_York", "2026-03-07T10:30:00-05:00", 1, "2026-03-08T10:30:00-04:00"},
      {"America/New_York", "2026-03-09T10:30:00-04:00", -4, "2026-03-05T10:30:00-05:00"},
      {"Europe/Berlin", "2026-10-24T23:59:59+02:00", 1, "2026-10-25T23:59:59+01:00"},
      {"Europe/Berlin", "2026-11-21T15:30:00+01:00", -1, "2026-11-20T15:30:00+01:00"},
      {"Europe/Berlin", "2026-03-01T12:00:00+01:00", 365, "2027-03-01T12:00:00+01:00"},
      // 00:30 does not exist on the target day: it is read with the offset before the gap.
      {"America/Sao_Paulo", "2018-11-03T00:30:00-03:00", 1, "2018-11-04T01:30:00-02:00"},
  };
  for (const auto& c : cases) {
    const auto cal = calendar("en_US", c.zone);
    const auto result = cal.dateByAdding(CalendarComponent::day, c.days, at(c.from));
    ASSERT_TRUE(result.has_value()) << c.from;
    EXPECT_EQ(local(*result, cal), c.expected) << c.zone << " " << c.from << " + " << c.days;
  }
}

// Adding a day keeps the clock time even from a start of day that is not
// midnight: the next day starts at 00:00, the sum lands at 01:00.
TEST(CalendarAdding, ADayAfterALateStartOfDayKeepsItsClockTime) {
  const auto cal = calendar("en_US", "America/Sao_Paulo");
  const auto start = cal.startOfDay(at("2018-11-04T12:00:00-02:00"));
  EXPECT_EQ(local(*cal.dateByAdding(CalendarComponent::day, 1, start), cal), "2018-11-05T01:00:00-02:00");
}

TEST(CalendarAdding, MonthsAndYearsClampToTheLastDayAndComponentsGoLargestFirst) {
  const auto cal = calendar("en_US", "UTC");
  EXPECT_EQ(local(*cal.dateByAdding(CalendarComponent::month, 1, at("2026-01-31T08:00:00Z")), cal),
            "2026-02-28T08:00:00+00:00");
  EXPECT_EQ(local(*cal.dateByAdding(CalendarComponent::year, 1, at("2024-02-29T08:00:00Z")), cal),
            "2025-02-28T08:00:00+00:00");
  DateComponents monthThenDay;
  monthThenDay.month = 1;
  monthThenDay.day = 1;
  EXPECT_EQ(local(*cal.dateByAdding(monthThenDay, at("2026-01-31T08:00:00Z")), cal), "2026-03-01T08:00:00+00:00");
}

TEST(CalendarAdding, KeepsFractionsOfASecondAndFailsOnUnrepresentableResults) {
  const auto cal = calendar("en_US", "Europe/Berlin");
  const auto from = at("2026-11-21T15:30:00.250+01:00");
  const auto next = cal.dateByAdding(CalendarComponent::day, 1, from).value();
  EXPECT_DOUBLE_EQ(next.timeIntervalSinceReferenceDate() - from.timeIntervalSinceReferenceDate(), 86400.0);
  EXPECT_FALSE(cal.dateByAdding(CalendarComponent::day, std::int64_t{1} << 40, from).has_value());
  EXPECT_FALSE(cal.dateByAdding(CalendarComponent::year, 2'000'000'000, from).has_value());
  EXPECT_FALSE(cal.dateByAdding(CalendarComponent::year, 6'000'000, from).has_value());
  EXPECT_FALSE(cal.dateByAdding(CalendarComponent::year, -6'000'000, from).has_value());
  EXPECT_TRUE(cal.dateByAdding(CalendarComponent::year, 5'000'000, from).has_value());
}

TEST(CalendarIsDate, ComparesDaysInTheCalendarsOwnZone) {
  struct Case {
    const char* zone;
    const char* a;
    const char* b;
    bool sameDay;
  };
  const Case cases[] = {
      {"UTC", "2026-11-21T22:30:00Z", "2026-11-21T23:30:00Z", true},
      {"Europe/Berlin", "2026-11-21T22:30:00Z", "2026-11-21T23:30:00Z", false},
      {"Europe/Berlin", "2026-11-21T23:30:00Z", "2026-11-22T00:30:00Z", true},
      {"America/New_York", "2026-11-21T23:30:00Z", "2026-11-22T04:59:59Z", true},
      {"America/New_York", "2026-11-22T04:59:59Z", "2026-11-22T05:00:00Z", false},
      {"America/Sao_Paulo", "2018-11-03T23:59:59-03:00", "2018-11-04T01:00:00-02:00", false},
      {"Europe/Berlin", "2025-11-21T12:00:00+01:00", "2026-11-21T12:00:00+01:00", false},
  };
  for (const auto& c : cases) {
    const auto cal = calendar("en_US", c.zone);
    EXPECT_EQ(cal.isDate(at(c.a), at(c.b), CalendarComponent::day), c.sameDay) << c.zone << " " << c.a << " " << c.b;
    EXPECT_EQ(cal.isDate(at(c.b), at(c.a), CalendarComponent::day), c.sameDay) << c.zone;
  }
}

TEST(CalendarIsDate, YearsFollowTheLocalesCalendarSystem) {
  struct Case {
    const char* locale;
    const char* a;
    const char* b;
    bool sameYear;
  };
  const Case cases[] = {
      // The Japanese era changed at midnight between these days, and with it the year.
      {"ja_JP@calendar=japanese", "2019-04-30T12:00:00+09:00", "2019-05-01T12:00:00+09:00", false},
      {"ja_JP", "2019-04-30T12:00:00+09:00", "2019-05-01T12:00:00+09:00", true},
      {"ja_JP@calendar=japanese", "2019-01-01T12:00:00+09:00", "2019-04-30T23:59:59+09:00", true},
      // 1 Tishrei 5787 is 12 September 2026.
      {"he_IL@calendar=hebrew", "2026-09-11T12:00:00+09:00", "2026-09-12T12:00:00+09:00", false},
      {"he_IL@calendar=hebrew", "2026-09-12T12:00:00+09:00", "2027-01-12T12:00:00+09:00", true},
      {"en_US", "2026-09-12T12:00:00+09:00", "2027-01-12T12:00:00+09:00", false},
      {"th_TH@calendar=buddhist", "2026-12-31T12:00:00+09:00", "2026-01-01T12:00:00+09:00", true},
  };
  for (const auto& c : cases) {
    const auto cal = calendar(c.locale, "Asia/Tokyo");
    EXPECT_EQ(cal.isDate(at(c.a), at(c.b), CalendarComponent::year), c.sameYear) << c.locale << " " << c.a;
  }
}

TEST(CalendarComponent, ReadsEraYearMonthAndDayInTheLocalesCalendar) {
  struct Case {
    const char* locale;
    const char* instant;
    std::int64_t era, year, month, day;
  };
  const Case cases[] = {
      {"ja_JP@calendar=japanese", "2019-04-30T23:59:59+09:00", 235, 31, 4, 30},
      {"ja_JP@calendar=japanese", "2019-05-01T00:00:00+09:00", 236, 1, 5, 1},
      {"th_TH@calendar=buddhist", "2026-11-05T10:00:00+09:00", 0, 2569, 11, 5},
      {"en_US", "2026-11-05T10:00:00+09:00", 1, 2026, 11, 5},
      {"en_US", "2026-11-04T23:00:00Z", 1, 2026, 11, 5},
  };
  for (const auto& c : cases) {
    const auto cal = calendar(c.locale, "Asia/Tokyo");
    const auto date = at(c.instant);
    EXPECT_EQ(cal.component(CalendarComponent::era, date), c.era) << c.locale << " " << c.instant;
    EXPECT_EQ(cal.component(CalendarComponent::year, date), c.year) << c.locale << " " << c.instant;
    EXPECT_EQ(cal.component(CalendarComponent::month, date), c.month) << c.locale << " " << c.instant;
    EXPECT_EQ(cal.component(CalendarComponent::day, date), c.day) << c.locale << " " << c.instant;
  }
}

TEST(CalendarIdentity, FollowsTheLocaleKeyword) {
  EXPECT_EQ(calendar("ja_JP@calendar=japanese", "Asia/Tokyo").identifier(), "japanese");
  EXPECT_EQ(calendar("ja_JP", "Asia/Tokyo").identifier(), "gregorian");
  EXPECT_EQ(calendar("th_TH@calendar=buddhist", "Asia/Bangkok").identifier(), "buddhist");
}

}  // namespace
}  // namespace quillan::platform
