#include "streak/StreakWidgetWidgetEntryView.hpp"

#include "streak/StreakDays.hpp"
#include "streak/StreakMediumView.hpp"

namespace quillan::streak {

views::Node StreakWidgetWidgetEntryView::body(const views::Environment& environment) const {
  return StreakMediumView(environment, {kPastDateRange.begin(), kPastDateRange.end()}).body(environment);
}

}  // namespace quillan::streak
