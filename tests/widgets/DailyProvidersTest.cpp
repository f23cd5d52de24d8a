#include <gtest/gtest.h>

#include "support/ProcessEnvironment.hpp"
#include "widgets/DailyProviders.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::widgets {
namespace {

using testing::ProcessEnvironment;

struct DayCase {
  const char* zone;
  const char* now;
  const char* entry;
  const char* reload;
  const char* locale = "en_US";
};

// Days that start at midnight, days whose midnight does not exist, and days of
// 23 and 25 hours: the entry is the calendar's start of today and the reload the
// start of tomorrow, never a fixed 00:00 or 24 hours.
constexpr DayCase kDays[] = {
    {"Europe/Berlin", "2026-11-22T12:00:00+01:00", "2026-11-22T00:00:00+01:00", "2026-11-23T00:00:00+01:00"},
    {"Europe/Berlin", "2026-11-22T23:59:59+01:00", "2026-11-22T00:00:00+01:00", "2026-11-23T00:00:00+01:00"},
    {"Europe/Berlin", "2026-11-22T00:00:00+01:00", "2026-11-22T00:00:00+01:00", "2026-11-23T00:00:00+01:00"},
    {"America/Sao_Paulo", "2018-11-04T12:00:00-02:00", "2018-11-04T01:00:00-02:00", "2018-11-05T00:00:00-02:00"},
    {"America/Sao_Paulo", "2018-11-03T22:00:00-03:00", "2018-11-03T00:00:00-03:00", "2018-11-04T01:00:00-02:00"},
    {"America/Havana", "2026-03-08T09:00:00-04:00", "2026-03-08T01:00:00-04:00", "2026-03-09T00:00:00-04:00"},
    {"America/Havana", "2026-03-07T23:30:00-05:00", "2026-03-07T00:00:00-05:00", "2026-03-08T01:00:00-04:00"},
    {"America/Santiago", "2026-09-06T18:00:00-03:00", "2026-09-06T01:00:00-03:00", "2026-09-07T00:00:00-03:00"},
    {"Europe/Berlin", "2026-03-29T12:00:00+02:00", "2026-03-29T00:00:00+01:00", "2026-03-30T00:00:00+02:00"},
    {"Europe/Berlin", "2026-10-25T12:00:00+01:00", "2026-10-25T00:00:00+02:00", "2026-10-26T00:00:00+01:00"},
    {"Pacific/Kiritimati", "2026-11-22T00:30:00+14:00", "2026-11-22T00:00:00+14:00", "2026-11-23T00:00:00+14:00"},
    {"Pacific/Pago_Pago", "2026-11-21T23:59:59-11:00", "2026-11-21T00:00:00-11:00", "2026-11-22T00:00:00-11:00"},
    // Calendars whose years and months are not Gregorian share the local day.
    {"Asia/Tokyo", "2026-11-22T15:00:00+09:00", "2026-11-22T00:00:00+09:00", "2026-11-23T00:00:00+09:00",
     "ja_JP@calendar=japanese"},
    {"Asia/Tokyo", "2026-11-22T15:00:00+09:00", "2026-11-22T00:00:00+09:00", "2026-11-23T00:00:00+09:00",
     "th_TH@calendar=buddhist"},
    {"Asia/Tokyo", "2026-11-22T15:00:00+09:00", "2026-11-22T00:00:00+09:00", "2026-11-23T00:00:00+09:00",
     "he_IL@calendar=hebrew"},
};

TEST(DailyProviders, TimelineIsOneEntryAtStartOfTodayReloadingAtStartOfTomorrow) {
  for (const auto& day : kDays) {
    ProcessEnvironment environment(day.now, day.zone, day.locale);
    const auto answer = askProvider(Provider{}, TimelineRequest::timeline);
    ASSERT_EQ(answer.entryDates.size(), 1u) << day.zone << " " << day.now;
    EXPECT_EQ(ProcessEnvironment::local(answer.entryDates[0]), day.entry) << day.zone << " " << day.now;
    ASSERT_TRUE(answer.policy.has_value());
    EXPECT_EQ(answer.policy->kind(), TimelineReloadPolicy::Kind::after);
    EXPECT_EQ(ProcessEnvironment::local(*answer.policy->date()), day.reload) << day.zone << " " << day.now;
  }
}

TEST(DailyProviders, SnapshotAndPlaceholderAreDatedNowWithoutPolicy) {
  ProcessEnvironment environment("2026-11-22T08:30:15.250+01:00", "Europe/Berlin");
  for (auto request : {TimelineRequest::snapshot, TimelineRequest::placeholder}) {
    const auto answer = askProvider(Provider{}, request);
    ASSERT_EQ(answer.entryDates.size(), 1u);
    EXPECT_EQ(answer.entryDates[0], platform::Clock::now());
    EXPECT_FALSE(answer.policy.has_value());
  }
}

}  // namespace
}  // namespace quillan::widgets
