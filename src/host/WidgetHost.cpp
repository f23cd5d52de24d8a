#include "host/WidgetHost.hpp"

namespace quillan::host {

WidgetHost::WidgetHost(platform::Date start, TimelineSource source, Scheduler::Listener listener,
                       SchedulerOptions options)
    : scheduler_(start, std::move(source), std::move(listener), options) {}

void WidgetHost::place(std::string kind) { scheduler_.place(std::move(kind)); }

void WidgetHost::advanceTo(platform::Date time) { scheduler_.advanceTo(time); }

void WidgetHost::setClock(platform::Date time) {
  const double ahead = time.timeIntervalSinceReferenceDate() - now().timeIntervalSinceReferenceDate();
  if (ahead > kLivedThroughSeconds) scheduler_.jumpTo(time);
  else scheduler_.advanceTo(time);
}

void WidgetHost::environmentChanged() { scheduler_.reloadAll(now(), ReloadReason::environment); }

void WidgetHost::appWroteJournal() { scheduler_.reloadAll(now(), ReloadReason::app); }

}  // namespace quillan::host
