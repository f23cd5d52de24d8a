#include "host/Scheduler.hpp"

#include <cmath>
#include <stdexcept>
#include <tuple>

#include "platform/ISO8601.hpp"

namespace quillan::host {

using platform::Date;

// Something due at an instant: an entry swap or an ask of one widget.
struct Scheduler::Due {
  Date at;
  std::size_t widget;
  bool isReload;

  bool before(const Due& other) const {
    return std::tie(at, widget, isReload) < std::tie(other.at, other.widget, other.isReload);
  }
};

// Marks the scheduler busy for one public call, so a listener or source that
// calls back in is caught instead of corrupting the loop it runs in.
class Scheduler::CallGuard {
 public:
  explicit CallGuard(bool& busy) : busy_(busy) {
    if (busy_) throw std::logic_error("the scheduler was called from its own listener or timeline source");
    busy_ = true;
  }
  ~CallGuard() { busy_ = false; }
  CallGuard(const CallGuard&) = delete;
  CallGuard& operator=(const CallGuard&) = delete;

 private:
  bool& busy_;
};

namespace {

void requireFinite(Date time, const char* what) {
  if (!std::isfinite(time.timeIntervalSinceReferenceDate())) {
    throw std::invalid_argument(std::string(what) + " is not a finite instant");
  }
}

std::string isoUTC(Date date) { return platform::ISO8601::format(date, 0); }

}  // namespace

Scheduler::Scheduler(Date start, TimelineSource source, Listener listener, SchedulerOptions options)
    : now_(start), source_(std::move(source)), listener_(std::move(listener)), options_(options) {
  requireFinite(start, "the scheduler's start");
  if (!source_) throw std::invalid_argument("the scheduler needs a timeline source");
  checkSchedulerOptions(options_);
}

void Scheduler::place(std::string kind) {
  CallGuard guard(busy_);
  if (kind.empty()) throw std::invalid_argument("a widget kind must not be empty");
  if (widget(kind)) throw std::invalid_argument("widget " + kind + " is already placed");
  widgets_.emplace_back(std::move(kind), options_.reloadBudget);
  ask(widgets_.back(), ReloadReason::placed);
}

void Scheduler::advanceTo(Date time) {
  CallGuard guard(busy_);
  requireFinite(time, "the time to advance to");
  if (time < now_) {
    jumpWithin(time);
  } else {
    advanceWithin(time);
  }
}

void Scheduler::jumpTo(Date time) {
  CallGuard guard(busy_);
  requireFinite(time, "the time to jump to");
  jumpWithin(time);
}

void Scheduler::reloadAll(Date at, ReloadReason reason) {
  CallGuard guard(busy_);
  requireFinite(at, "the time of the reload");
  if (reason != ReloadReason::app && reason != ReloadReason::environment && reason != ReloadReason::timeChange) {
    throw std::invalid_argument("reloading all timelines takes app, environment or time-change, not " +
                                std::string(reloadReasonName(reason)));
  }
  if (at < now_) {
    throw std::invalid_argument("cannot reload at " + isoUTC(at) + ", before the host's time " + isoUTC(now_));
  }
  advanceWithin(at);
  for (auto& widget : widgets_) ask(widget, reason);
}

std::optional<Date> Scheduler::nextEventTime() const {
  const auto due = nextDue();
  if (!due) return std::nullopt;
  return due->at;
}

std::vector<WidgetState> Scheduler::widgets() const {
  std::vector<WidgetState> states;
  states.reserve(widgets_.size());
  for (const auto& widget : widgets_) states.push_back(widget.state(now_));
  return states;
}

std::optional<WidgetState> Scheduler::widget(std::string_view kind) const {
  for (const auto& widget : widgets_) {
    if (widget.kind() == kind) return widget.state(now_);
  }
  return std::nullopt;
}

std::optional<Scheduler::Due> Scheduler::nextDue() const {
  std::optional<Due> next;
  const auto consider = [&next](const Due& due) {
    if (!next || due.before(*next)) next = due;
  };
  for (std::size_t index = 0; index < widgets_.size(); ++index) {
    if (const auto swap = widgets_[index].nextSwap(now_)) consider({*swap, index, false});
    if (const auto& pending = widgets_[index].pendingReload()) consider({pending->due, index, true});
  }
  return next;
}

void Scheduler::advanceWithin(Date time) {
  for (auto due = nextDue(); due && due->at <= time; due = nextDue()) {
    now_ = due->at;
    handle(*due);
  }
  now_ = time;
}

void Scheduler::jumpWithin(Date time) {
  now_ = time;
  for (auto& widget : widgets_) {
    widget.budget().forgetAfter(time);
    ask(widget, ReloadReason::timeChange);
  }
}

void Scheduler::handle(const Due& due) {
  auto& widget = widgets_[due.widget];
  if (due.isReload) {
    reloadWhenDue(widget);
  } else {
    showCurrentEntry(widget);
  }
}

void Scheduler::reloadWhenDue(PlacedWidget& widget) {
  const auto reason = widget.pendingReload()->reason;
  const auto slot = widget.budget().nextSlot(now_);
  if (isChargedToBudget(reason) && slot > now_) {
    widget.budget().record(ReloadReason::budgetDeferred, now_);
    widget.deferPendingReload(slot);
    emit(widget, ReloadStarted{ReloadReason::budgetDeferred, slot});
    return;
  }
  ask(widget, reason);
}

void Scheduler::ask(PlacedWidget& widget, ReloadReason reason) {
  widget.budget().record(reason, now_);
  emit(widget, ReloadStarted{reason, std::nullopt});
  auto outcome = askSource(widget.kind());
  if (auto* failure = std::get_if<TimelineFailure>(&outcome)) {
    widget.fail(failure->reason, now_, options_);
    emit(widget, AskFailed{failure->reason});
    return;
  }
  emit(widget, widget.follow(std::get<widgets::TimelineAnswer>(outcome), now_, options_));
  showCurrentEntry(widget);
}

void Scheduler::showCurrentEntry(PlacedWidget& widget) {
  const auto entry = widget.currentEntry(now_);
  if (!entry) return;
  widget.show(*entry);
  emit(widget, EntryShown{*entry});
}

// A source that throws or answers with something unusable fails the ask like
// a provider that stops: the widget shows why, the host carries on.
TimelineOutcome Scheduler::askSource(const std::string& kind) {
  TimelineOutcome outcome;
  try {
    outcome = source_(kind, now_);
  } catch (const std::exception& error) {
    return TimelineFailure{std::string("the timeline source failed: ") + error.what()};
  }
  if (auto* failure = std::get_if<TimelineFailure>(&outcome)) {
    if (failure->reason.empty()) failure->reason = "the timeline source failed without a reason";
    return outcome;
  }
  if (auto problem = timelineAnswerProblem(std::get<widgets::TimelineAnswer>(outcome))) {
    return TimelineFailure{std::move(*problem)};
  }
  return outcome;
}

void Scheduler::emit(const PlacedWidget& widget, decltype(SchedulerEvent::detail) detail) {
  if (listener_) listener_(SchedulerEvent{now_, widget.kind(), std::move(detail)});
}

}  // namespace quillan::host
