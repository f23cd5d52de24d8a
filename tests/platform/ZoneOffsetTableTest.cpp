#include <gtest/gtest.h>
#include <unicode/basictz.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "platform/ISO8601.hpp"
#include "platform/TimeZoneImpl.hpp"
#include "platform/ZoneOffsetTable.hpp"

namespace quillan::platform {
namespace {

Date at(const char* text) { return *ISO8601::parse(text); }

// Every transition of `zone` between two instants, from ICU itself.
std::vector<double> transitionMillis(const TimeZone& zone, Date from, Date to) {
  const auto* rules = dynamic_cast<const icu::BasicTimeZone*>(zone.impl().zone.get());
  std::vector<double> found;
  icu::TimeZoneTransition transition;
  double cursor = from.unixMilliseconds();
  while (rules && rules->getNextTransition(cursor, /*inclusive=*/false, transition) &&
         transition.getTime() < to.unixMilliseconds()) {
    cursor = transition.getTime();
    found.push_back(cursor);
  }
  return found;
}

// Instants on both sides of every transition (down to half a millisecond,
// which ICU rounds its own way), every six hours between them and outlandish
// ones, shuffled so that the table is filled and searched out of order.
std::vector<Date> probes(const TimeZone& zone, Date from, Date to) {
  std::vector<Date> dates;
  for (const double transition : transitionMillis(zone, from, to)) {
    for (const double delta : {-3600000.0, -1000.0, -1.0, -0.5, 0.0, 0.5, 1.0, 1000.0, 3600000.0}) {
      dates.push_back(Date::fromUnixMilliseconds(transition + delta));
    }
  }
  constexpr double kStep = 6 * 3600.0 + 7.0;
  for (double s = from.timeIntervalSinceReferenceDate(); s < to.timeIntervalSinceReferenceDate(); s += kStep) {
    dates.push_back(Date::fromReferenceSeconds(s));
  }
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double s : {-1e300, -5e10, -3e9, 3e9, 5e10, 1e300, kInfinity, -kInfinity, std::nan("")}) {
    dates.push_back(Date::fromReferenceSeconds(s));
  }
  std::shuffle(dates.begin(), dates.end(), std::mt19937(7));
  return dates;
}

TEST(ZoneOffsetTable, AnswersAsTheZoneAcrossEveryTransition) {
  // Plain daylight saving, a skipped midnight, half-hour daylight saving, a
  // skipped day, negative daylight saving, many irregular switches, none at all.
  for (const char* id : {"Europe/Berlin", "America/Havana", "Australia/Lord_Howe", "Pacific/Apia", "Europe/Dublin",
                         "Africa/Casablanca", "America/Sao_Paulo", "UTC"}) {
    const auto zone = *TimeZone::named(id);
    ZoneOffsetTable table(zone);
    std::size_t wrong = 0;
    const auto dates = probes(zone, at("1965-01-01T00:00:00Z"), at("2045-01-01T00:00:00Z"));
    for (const auto date : dates) {
      // A second lookup, from the table if the first was kept, agrees too.
      if (table.secondsFromGMT(date) != zone.secondsFromGMT(date)) ++wrong;
      if (table.secondsFromGMT(date) != zone.secondsFromGMT(date)) ++wrong;
    }
    EXPECT_EQ(wrong, 0u) << id << " over " << dates.size() << " dates";
  }
}

}  // namespace
}  // namespace quillan::platform
