#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/Date.hpp"

namespace quillan::streak {

inline constexpr std::string_view kStreakSource = "OnThisDayWidgetExtension/StreakMediumView";

// The past days the streak row shows, oldest first; today is drawn on its own
// after them.
inline constexpr std::array<std::int64_t, 4> kPastDateRange = {-4, -3, -2, -1};

// Now moved by `offset` calendar days in the current calendar, keeping the time
// of day (a day, not its start: -1 at 15:30 is yesterday at 15:30). Where that
// wall time does not exist on the target day the calendar moves it forward, but
// it stays on that day. A calendar that cannot add the days stops the process.
platform::Date dayMoment(std::int64_t offset);

}  // namespace quillan::streak
