#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Scheduler.hpp"

namespace quillan::host {

// The phone's widget host on a virtual clock: the one place where what
// happens to the host (time passing, the clock being set, the environment
// changing, the app writing its journal) becomes the scheduler's calls, so a
// live server and an offline replay reload for the same reasons. Pure logic:
// no threads, no I/O; the caller says when things happen.
//
// Setting the clock forward by at most kLivedThroughSeconds is lived through
// (every swap and reload on the way happens, as if time passed); a longer
// jump, like setting the clock back, is the phone's significant time change:
// every widget is asked again at the new instant.
class WidgetHost {
 public:
  static constexpr double kLivedThroughSeconds = 48 * 3600.0;

  // See Scheduler's constructor, which throws for the same arguments.
  WidgetHost(platform::Date start, TimelineSource source, Scheduler::Listener listener = {},
             SchedulerOptions options = {});

  // Places the widget `kind` and asks for its first timeline now.
  void place(std::string kind);

  // Time passed up to `time`: everything due on the way happens. A `time`
  // before now() is the clock having gone back, a significant time change.
  void advanceTo(platform::Date time);
  // The clock was set to `time`, under the rule above.
  void setClock(platform::Date time);
  // The zone, locale or another setting the views read changed: every widget
  // is asked again now.
  void environmentChanged();
  // The app wrote its journal: its "reload all timelines", now.
  void appWroteJournal();

  std::optional<platform::Date> nextEventTime() const { return scheduler_.nextEventTime(); }
  platform::Date now() const { return scheduler_.now(); }
  std::vector<WidgetState> widgets() const { return scheduler_.widgets(); }
  std::optional<WidgetState> widget(std::string_view kind) const { return scheduler_.widget(kind); }

 private:
  Scheduler scheduler_;
};

}  // namespace quillan::host
