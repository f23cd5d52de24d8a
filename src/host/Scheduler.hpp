#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/PlacedWidget.hpp"
#include "host/SchedulerEvent.hpp"
#include "host/SchedulerOptions.hpp"
#include "host/TimelineSource.hpp"
#include "host/WidgetState.hpp"
#include "platform/Date.hpp"

namespace quillan::host {

// The host's timelines over a virtual clock, as the phone keeps them: pure
// logic, no I/O, no real time. A live server calls advanceTo(clock.now()) and
// sleeps until nextEventTime(); an offline replay jumps from event to event.
// Both see the same events, because time is only ever handled as a sequence of
// instants: advancing a week at once or minute by minute gives the same log.
//
// For each placed widget it
// - asks the source for a timeline when the widget is placed (free);
// - shows the entry whose date is the latest not after now, and swaps to each
//   later entry when its date arrives, without asking. Until a timeline's
//   first date arrives the widget keeps what it showed, or, never having shown
//   an entry, its placeholder;
// - asks again when the policy comes due: after(d) at d; atEnd when the last
//   entry's date arrives (the widget has shown everything it was given);
//   never only on reloadAll. A policy date already passed when the timeline
//   arrives waits options.minimumReloadInterval instead;
// - charges policy reloads and retries to the widget's budget; one that comes
//   due over budget is deferred (a `budget-deferred` reload, the widget stale)
//   until the rolling window frees a slot;
// - on a failed ask keeps the previous timeline, marks the widget failed with
//   the reason and retries after options.minimumReloadInterval, doubling the
//   wait after each further failure up to options.maxRetryDelay;
// - on reloadAll asks every widget again, free of charge.
//
// Events at the same instant are handled widget by widget in placement order,
// an entry swap before a reload. The listener hears every event as it
// happens and may read the scheduler's state; neither it nor the source may
// change the scheduler (that throws std::logic_error). Not thread-safe: a
// server guards it with one lock.
class Scheduler {
 public:
  using Listener = std::function<void(const SchedulerEvent&)>;

  // Starts the virtual time at `start`, with no widget placed. Throws
  // std::invalid_argument for options out of range, a non-finite start or an
  // empty source.
  Scheduler(platform::Date start, TimelineSource source, Listener listener = {}, SchedulerOptions options = {});

  // Places the widget `kind` and asks for its first timeline at now(). Throws
  // std::invalid_argument for an empty kind or one already placed.
  void place(std::string kind);

  // Handles, in time order, everything due up to and including `time`, then
  // stands at `time`. A `time` before now() is the clock being set back: see
  // jumpTo. Throws std::invalid_argument for a non-finite time.
  void advanceTo(platform::Date time);
  // The clock was set to `time` without living through the time between (the
  // phone's significant time change): nothing due in between happens; every
  // widget is asked again at `time`, free of charge, and reloads counted after
  // `time` are forgotten.
  void jumpTo(platform::Date time);
  // Advances to `at` and asks every widget again for `reason`, free of charge:
  // app (the app's "reload all timelines"), environment or timeChange. Throws
  // std::invalid_argument for another reason or an `at` before now().
  void reloadAll(platform::Date at, ReloadReason reason = ReloadReason::app);

  // When something is next due (an entry swap or an ask); empty when nothing
  // will happen without reloadAll.
  std::optional<platform::Date> nextEventTime() const;
  platform::Date now() const { return now_; }

  // The placed widgets in placement order, and one by kind.
  std::vector<WidgetState> widgets() const;
  std::optional<WidgetState> widget(std::string_view kind) const;

 private:
  struct Due;
  class CallGuard;

  std::optional<Due> nextDue() const;
  void advanceWithin(platform::Date time);
  void jumpWithin(platform::Date time);
  void handle(const Due& due);
  void reloadWhenDue(PlacedWidget& widget);
  void ask(PlacedWidget& widget, ReloadReason reason);
  void showCurrentEntry(PlacedWidget& widget);
  TimelineOutcome askSource(const std::string& kind);
  void emit(const PlacedWidget& widget, decltype(SchedulerEvent::detail) detail);

  platform::Date now_;
  TimelineSource source_;
  Listener listener_;
  SchedulerOptions options_;
  std::vector<PlacedWidget> widgets_;
  bool busy_ = false;
};

}  // namespace quillan::host
