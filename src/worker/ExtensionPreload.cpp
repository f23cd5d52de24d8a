#include "worker/ExtensionPreload.hpp"

#include "bundle/TimelineWidgetBundle.hpp"
#include "platform/Calendar.hpp"
#include "platform/DateFormatter.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::worker {

void preloadExtension() {
  const auto now = platform::Date::fromReferenceSeconds(0);
  const auto calendar = platform::Calendar::current();
  calendar.startOfDay(now);
  calendar.dateByAdding(platform::CalendarComponent::day, 1, now);
  platform::ISO8601::format(now, platform::TimeZone::current());
  platform::DateFormatter formatter;
  formatter.setDateStyle(platform::DateFormatterStyle::full);
  formatter.string(now);
  // The memories' month-and-day text: its pattern's symbols load on first use.
  platform::DateFormatter monthAndDay;
  monthAndDay.setDateFormat("MMMM dd");
  monthAndDay.string(now);
  bundle::TimelineWidgetBundle::body();
}

}  // namespace quillan::worker
