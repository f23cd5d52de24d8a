#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>
#include <vector>

#include "platform/DateFormatter.hpp"
#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

Date at(const char* iso) { return ISO8601::parse(iso).value(); }

DateFormatter formatter(const char* locale, const char* zone) {
  DateFormatter result;
  result.setLocale(Locale::named(locale).value());
  result.setTimeZone(TimeZone::named(zone).value());
  return result;
}

std::string formatted(const std::string& question) {
  const auto args = quillan::testing::words(question);
  std::size_t start = 0;
  for (int word = 0; word < 3; ++word) start = question.find(' ', start) + 1;
  const auto format = question.substr(start);
  const std::map<std::string, DateFormatterStyle> styles = {{"style:medium", DateFormatterStyle::medium},
                                                            {"style:short", DateFormatterStyle::short_},
                                                            {"style:full", DateFormatterStyle::full}};
  auto f = formatter(args[0].c_str(), args[1].c_str());
  if (const auto style = styles.find(format); style != styles.end()) f.setDateStyle(style->second);
  else f.setDateFormat(format);
  return f.string(at(args[2].c_str()));
}

TEST(DateFormatter, PatternsAndStylesFollowTheLocaleAndTheZoneDecidesTheDay) {
  for (int round = 0; round < 2; ++round) quillan::testing::expectGoldenAnswers("date_formats.txt", formatted);
}

// The cache is shared by the process; threads formatting at once must each get
// their own answer.
TEST(DateFormatter, ConcurrentFormattingGivesEachThreadItsOwnAnswer) {
  const std::pair<const char*, const char*> jobs[] = {{"en_US UTC 2026-11-05T23:30:00Z MMMM dd", "November 05"},
                                                      {"en_US Asia/Tokyo 2026-11-05T23:30:00Z MMMM dd", "November 06"},
                                                      {"de_DE UTC 2026-11-05T23:30:00Z MMMM dd", "November 05"},
                                                      {"fr_FR Asia/Tokyo 2026-11-05T23:30:00Z MMMM dd", "novembre 06"}};
  std::atomic<int> mismatches = 0;
  std::vector<std::thread> threads;
  for (const auto& job : jobs) {
    threads.emplace_back([&job, &mismatches] {
      for (int i = 0; i < 500; ++i) mismatches += formatted(job.first) != job.second;
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
