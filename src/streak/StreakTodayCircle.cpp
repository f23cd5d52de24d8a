#include "streak/StreakTodayCircle.hpp"

#include <utility>

#include "streak/StreakDayDisc.hpp"
#include "views/Builders.hpp"

namespace quillan::streak {

using namespace views;

StreakTodayCircle::StreakTodayCircle(const Environment& environment, platform::URL deeplinkAddRecordURL,
                                     platform::Date date, bool hasNotes)
    : colorScheme(environment.colorScheme),
      deeplinkAddRecordURL(std::move(deeplinkAddRecordURL)),
      date(date),
      hasNotes(hasNotes) {}

Node StreakTodayCircle::body(const Environment&) const {
  return link(deeplinkAddRecordURL.absoluteString(), hstack({
                                                         vstack({
                                                             streakDayDisc(kTodayDisc, colorScheme, date, hasNotes)
                                                                 .padding(EdgeSet::bottom(), 0.5)
                                                                 .padding(EdgeSet::horizontal(), 2.5),
                                                             streakDayOfMonth(date),
                                                         }),
                                                     }));
}

}  // namespace quillan::streak
