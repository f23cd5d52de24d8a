#include <gtest/gtest.h>

#include "compose/DeepLinks.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::compose {
namespace {

using testing::ProcessEnvironment;

TEST(DeepLinks, RecordDateIsTheLocalDayZeroPadded) {
  struct Case {
    const char* zone;
    const char* moment;
    const char* link;
  };
  const Case cases[] = {
      {"Europe/Berlin", "2026-03-05T12:00:00+01:00", "widget-deeplink-addrecord://RecordDate/2026-03-05"},
      // Late evening west of UTC: already the next day in UTC, still today locally.
      {"America/Los_Angeles", "2026-11-16T23:30:00-08:00", "widget-deeplink-addrecord://RecordDate/2026-11-16"},
      // Early morning east of UTC: still yesterday in UTC.
      {"Asia/Tokyo", "2026-01-01T00:30:00+09:00", "widget-deeplink-addrecord://RecordDate/2026-01-01"},
  };
  for (const auto& c : cases) {
    ProcessEnvironment environment(c.moment, c.zone);
    EXPECT_EQ(recordDateURL(platform::Clock::now()).absoluteString(), c.link) << c.zone;
  }
}

TEST(DeepLinks, RecordDateFollowsTheCurrentCalendarAsTheFormatterDoes) {
  // The formatter keeps the device's calendar: in the Japanese calendar the year
  // is the era year (Reiwa 8), digits stay Latin in the "yyyy-LL-dd" pattern.
  ProcessEnvironment environment("2026-11-16T10:00:00+09:00", "Asia/Tokyo", "ja_JP@calendar=japanese");
  EXPECT_EQ(recordDateURL(platform::Clock::now()).path(), "/0008-11-16");
}

}  // namespace
}  // namespace quillan::compose
