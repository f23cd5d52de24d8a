#pragma once

#include "streak/StreakEntry.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::streak {

// The streak widget's content: always the medium face over the last four days
// and today. The entry is not read; the circles link on their own.
struct StreakWidgetWidgetEntryView {
  StreakEntry entry;

  explicit StreakWidgetWidgetEntryView(StreakEntry entry) : entry(entry) {}

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::streak
