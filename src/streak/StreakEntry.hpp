#pragma once

#include "platform/Date.hpp"

namespace quillan::streak {

// The streak widget's timeline entry: only the moment it becomes current. The
// view reads the clock itself when drawn.
struct StreakEntry {
  platform::Date date;
};

}  // namespace quillan::streak
