#include "streak/StreakCircle.hpp"

#include "compose/DeepLinks.hpp"
#include "streak/StreakDayDisc.hpp"
#include "views/Builders.hpp"

namespace quillan::streak {

using namespace views;

StreakCircle::StreakCircle(const Environment& environment, platform::Date date, bool hasNotes)
    : colorScheme(environment.colorScheme), date(date), hasNotes(hasNotes) {}

Node StreakCircle::body(const Environment&) const {
  return link(compose::recordDateURL(date).absoluteString(),
              hstack({
                  vstack({
                      streakDayDisc(kPastDayDisc, colorScheme, date, hasNotes).padding(EdgeSet::bottom(), 0.5),
                      streakDayOfMonth(date),
                  }),
              }));
}

}  // namespace quillan::streak
