#pragma once

#include "streak/StreakEntry.hpp"
#include "widgets/DailyProviders.hpp"

namespace quillan::streak {

// The daily pattern every widget of the bundle follows: a placeholder and a
// snapshot dated now, and one entry at the start of today reloaded after the
// start of tomorrow, so the row moves on at each local midnight.
using StreakProvider = widgets::DailyProvider<StreakEntry>;

}  // namespace quillan::streak
