#include "streak/StreakDays.hpp"

#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"

namespace quillan::streak {

platform::Date dayMoment(std::int64_t offset) {
  platform::DateComponents components;
  components.day = offset;
  const auto moment = platform::Calendar::current().dateByAdding(components, platform::Clock::now());
  return platform::unwrap(moment, kStreakSource);
}

}  // namespace quillan::streak
