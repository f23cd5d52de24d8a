#pragma once

#include "platform/Date.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::streak {

// One past day of the streak row: its disc and day of month, linking to a new
// entry dated on that day ("widget-deeplink-addrecord://RecordDate/yyyy-LL-dd").
struct StreakCircle {
  views::ColorScheme colorScheme;
  platform::Date date;
  bool hasNotes;

  StreakCircle(const views::Environment& environment, platform::Date date, bool hasNotes);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::streak
