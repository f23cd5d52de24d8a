#pragma once

#include "platform/Date.hpp"
#include "platform/URL.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::streak {

// Today's circle, larger than the past days' and last in the row. It links to
// a new entry for today (`deeplinkAddRecordURL`, with no date in it).
struct StreakTodayCircle {
  views::ColorScheme colorScheme;
  platform::URL deeplinkAddRecordURL;
  platform::Date date;
  bool hasNotes;

  StreakTodayCircle(const views::Environment& environment, platform::URL deeplinkAddRecordURL, platform::Date date,
                    bool hasNotes);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::streak
