#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/DateFormatter.hpp"
#include "platform/ISO8601.hpp"

namespace quillan::platform {
namespace {

Date at(const char* iso) { return ISO8601::parse(iso).value(); }

DateFormatter formatter(const char* locale, const char* zone) {
  DateFormatter result;
  result.setLocale(Locale::named(locale).value());
  result.setTimeZone(TimeZone::named(zone).value());
  return result;
}

std::string withPattern(const char* pattern, const char* locale, const char* zone, Date date) {
  auto f = formatter(locale, zone);
  f.setDateFormat(pattern);
  return f.string(date);
}

std::string withStyle(DateFormatterStyle style, const char* locale, const char* zone, Date date) {
  auto f = formatter(locale, zone);
  f.setDateStyle(style);
  return f.string(date);
}

TEST(DateFormatter, PatternsAreUsedAsGivenInTheLocale) {
  struct Case {
    const char* locale;
    const char* pattern;
    const char* expected;
  };
  const Case cases[] = {
      {"en_US", "MMMM dd", "November 05"},
      {"en_US", "LLL dd", "Nov 05"},
      {"en_US", "yyyy-LL-dd", "2026-11-05"},
      {"en_US", "yyyy", "2026"},
      {"en_US", "EEE", "Thu"},
      {"en_US", "d", "5"},
      {"de_DE", "MMMM dd", "November 05"},
      {"de_DE", "EEE", "Do."},
      {"de_DE", "yyyy-LL-dd", "2026-11-05"},
      {"fr_FR", "MMMM dd", "novembre 05"},
      {"ja_JP", "MMMM dd", "11月 05"},
      {"ja_JP", "EEE", "木"},
      {"ja_JP", "yyyy", "2026"},
      // In the Japanese calendar 2026 is the eighth year of the Reiwa era.
      {"ja_JP@calendar=japanese", "yyyy", "0008"},
      {"ja_JP@calendar=japanese", "G y", "令和 8"},
      {"th_TH@calendar=buddhist", "yyyy", "2569"},
  };
  const auto date = at("2026-11-05T12:00:00+01:00");
  for (const auto& c : cases) {
    EXPECT_EQ(withPattern(c.pattern, c.locale, "Europe/Berlin", date), c.expected) << c.locale << " " << c.pattern;
  }
}

TEST(DateFormatter, MediumStyleFollowsTheLocale) {
  const auto date = at("2026-11-05T12:00:00+01:00");
  EXPECT_EQ(withStyle(DateFormatterStyle::medium, "en_US", "Europe/Berlin", date), "Nov 5, 2026");
  EXPECT_EQ(withStyle(DateFormatterStyle::medium, "de_DE", "Europe/Berlin", date), "05.11.2026");
  EXPECT_EQ(withStyle(DateFormatterStyle::medium, "ja_JP", "Europe/Berlin", date), "2026/11/05");
  EXPECT_EQ(withStyle(DateFormatterStyle::short_, "en_US", "Europe/Berlin", date), "11/5/26");
  EXPECT_EQ(withStyle(DateFormatterStyle::full, "en_US", "Europe/Berlin", date), "Thursday, November 5, 2026");
}

TEST(DateFormatter, TheZoneDecidesTheDay) {
  const auto date = at("2026-11-05T23:30:00Z");
  EXPECT_EQ(withPattern("MMMM dd", "en_US", "UTC", date), "November 05");
  EXPECT_EQ(withPattern("MMMM dd", "en_US", "Asia/Tokyo", date), "November 06");
  EXPECT_EQ(withPattern("MMMM dd", "en_US", "America/Los_Angeles", date), "November 05");
  EXPECT_EQ(withStyle(DateFormatterStyle::medium, "en_US", "Asia/Tokyo", date), "Nov 6, 2026");
}

// Formatters are cached per pattern, locale and zone; interleaving them must
// never hand one caller another's formatter.
TEST(DateFormatter, CachedFormattersStayApartByPatternLocaleAndZone) {
  const auto date = at("2026-11-05T23:30:00Z");
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(withPattern("LLL dd", "en_US", "UTC", date), "Nov 05");
    EXPECT_EQ(withPattern("LLL dd", "en_US", "Asia/Tokyo", date), "Nov 06");
    EXPECT_EQ(withPattern("LLLL dd", "de_DE", "UTC", date), "November 05");
    EXPECT_EQ(withPattern("MMMM", "fr_FR", "UTC", date), "novembre");
    EXPECT_EQ(withStyle(DateFormatterStyle::medium, "en_US", "UTC", date), "Nov 5, 2026");
  }
}

// The cache is shared by the process; threads formatting at once must each get
// their own answer.
TEST(DateFormatter, ConcurrentFormattingGivesEachThreadItsOwnAnswer) {
  struct Job {
    const char* locale;
    const char* zone;
    const char* expected;
  };
  const Job jobs[] = {{"en_US", "UTC", "November 05"},
                      {"en_US", "Asia/Tokyo", "November 06"},
                      {"de_DE", "UTC", "November 05"},
                      {"fr_FR", "Asia/Tokyo", "novembre 06"}};
  const auto date = at("2026-11-05T23:30:00Z");
  std::atomic<int> mismatches = 0;
  std::vector<std::thread> threads;
  for (const auto& job : jobs) {
    threads.emplace_back([&job, &mismatches, date] {
      for (int i = 0; i < 500; ++i) {
        if (withPattern("MMMM dd", job.locale, job.zone, date) != job.expected) ++mismatches;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(mismatches.load(), 0);
}

TEST(DateFormatter, TheFormatSetLastWinsAndNoFormatGivesNothing) {
  const auto date = at("2026-11-05T12:00:00Z");
  auto f = formatter("en_US", "UTC");
  EXPECT_EQ(f.string(date), "");
  f.setDateStyle(DateFormatterStyle::medium);
  f.setDateFormat("yyyy");
  EXPECT_EQ(f.string(date), "2026");
  f.setDateStyle(DateFormatterStyle::medium);
  EXPECT_EQ(f.string(date), "Nov 5, 2026");
}

}  // namespace
}  // namespace quillan::platform
