#include <gtest/gtest.h>

#include "platform/Calendar.hpp"
#include "platform/ISO8601.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

using quillan::testing::expectGoldenAnswers;
using quillan::testing::words;

Date at(const std::string& iso) { return ISO8601::parse(iso).value(); }

Calendar calendar(const std::string& locale, const std::string& zone) {
  return Calendar(Locale::named(locale).value(), TimeZone::named(zone).value());
}

std::string local(Date date, const Calendar& in) { return ISO8601::format(date, in.timeZone()); }

CalendarComponent component(const std::string& name) {
  if (name == "year") return CalendarComponent::year;
  if (name == "month") return CalendarComponent::month;
  return name == "day" ? CalendarComponent::day : CalendarComponent::era;
}

TEST(Calendar, StartOfDayIsMidnightOrTheFirstInstantAfterAMissingMidnight) {
  expectGoldenAnswers("calendar_start_of_day.txt", [](const std::string& question) {
    const auto args = words(question);
    const auto cal = calendar("en_US", args[0]);
    const auto start = cal.startOfDay(at(args[1]));
    const auto next = cal.startOfDay(cal.dateByAdding(CalendarComponent::day, 1, at(args[1])).value());
    const auto hours = (next.timeIntervalSinceReferenceDate() - start.timeIntervalSinceReferenceDate()) / 3600;
    return local(start, cal) + " (" + std::to_string(hours) + " h)";
  });
}

TEST(Calendar, AddingKeepsTheClockTimeAndClampsToTheLastDay) {
  expectGoldenAnswers("calendar_adding.txt", [](const std::string& question) {
    const auto args = words(question);
    const auto cal = calendar("en_US", args[0]);
    const auto sum = cal.dateByAdding(component(args[2]), std::stoll(args[3]), at(args[1]));
    return sum ? local(*sum, cal) : std::string("none");
  });
  // Components go largest first: a month, then a day.
  const auto utc = calendar("en_US", "UTC");
  DateComponents monthThenDay;
  monthThenDay.month = 1;
  monthThenDay.day = 1;
  EXPECT_EQ(local(*utc.dateByAdding(monthThenDay, at("2026-01-31T08:00:00Z")), utc), "2026-03-01T08:00:00+00:00");
}

TEST(Calendar, IsDateComparesInTheCalendarsOwnZoneAndSystem) {
  expectGoldenAnswers("calendar_same.txt", [](const std::string& question) {
    const auto args = words(question);
    const auto cal = calendar(args[0], args[1]);
    const bool forth = cal.isDate(at(args[3]), at(args[4]), component(args[2]));
    const bool back = cal.isDate(at(args[4]), at(args[3]), component(args[2]));
    return forth != back ? "depends on the order" : forth ? "same" : "different";
  });
}

TEST(Calendar, ComponentsAreReadInTheLocalesCalendar) {
  expectGoldenAnswers("calendar_components.txt", [](const std::string& question) {
    const auto args = words(question);
    const auto cal = calendar(args[0], args[1]);
    std::string answer = cal.identifier();
    for (const char* name : {"era", "year", "month", "day"}) {
      answer += std::string(" ") + name + " " + std::to_string(cal.component(component(name), at(args[2])));
    }
    return answer;
  });
}

}  // namespace
}  // namespace quillan::platform
