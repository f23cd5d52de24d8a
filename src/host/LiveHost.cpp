#include "host/LiveHost.hpp"

#include <algorithm>
#include <chrono>

#include "bundle/TimelineWidgetBundle.hpp"
#include "host/WorkerTimelineSource.hpp"

namespace quillan::host {
namespace {

// A sleeping host wakes at least this often (seconds of real time), so a
// clock that drifts from the one it computed its sleep with is caught up.
constexpr double kLongestSleep = 30;

views::WidgetFamily familyOf(const std::string& kind) {
  return bundle::TimelineWidgetBundle::widget(kind)->supportedFamilies.front();
}

}  // namespace

LiveHost::LiveHost(worker::WidgetWorker& timelines, HostEnvironment settings, SchedulerOptions options, HostClock clock,
                   PictureListener listener)
    : timelines_(timelines),
      options_(options),
      listener_(std::move(listener)),
      clock_(std::move(clock)),
      settings_(std::move(settings)),
      publishedAt_(clock_.now()) {
  checkSchedulerOptions(options_);
}

LiveHost::~LiveHost() { stop(); }

void LiveHost::start() {
  if (thread_.joinable()) return;
  publishPlaced();
  thread_ = std::thread([this] { run(); });
}

// Every widget is on the page from the start, loading until its first ask
// answers, so a page opened at once never sees an empty screen.
void LiveHost::publishPlaced() {
  std::lock_guard lock(mutex_);
  if (!published_.empty()) return;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    WidgetState state;
    state.kind = widget.kind;
    state.reloadBudget = options_.reloadBudget;
    published_.push_back({std::move(state), familyOf(widget.kind)});
  }
}

void LiveHost::stop() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

std::vector<PlacedWidgetView> LiveHost::widgets() const {
  std::lock_guard lock(mutex_);
  return published_;
}

std::optional<PlacedWidgetView> LiveHost::widget(const std::string& kind) const {
  std::lock_guard lock(mutex_);
  for (const auto& widget : published_) {
    if (widget.state.kind == kind) return widget;
  }
  return std::nullopt;
}

platform::Date LiveHost::now() const {
  std::lock_guard lock(mutex_);
  return clock_.now();
}

platform::Date LiveHost::publishedAt() const {
  std::lock_guard lock(mutex_);
  return publishedAt_;
}

HostEnvironment LiveHost::settings() const {
  std::lock_guard lock(mutex_);
  return settings_;
}

void LiveHost::changeClock(const ClockChange& change) {
  {
    std::lock_guard lock(mutex_);
    applyClockChange(clock_, change);
    pending_.clockSet = pending_.clockSet || std::holds_alternative<PinClock>(change);
  }
  wake_.notify_all();
}

void LiveHost::changeSettings(const HostEnvironment& settings) {
  {
    std::lock_guard lock(mutex_);
    if (settings == settings_) return;
    settings_ = settings;
    pending_.environmentChanged = true;
  }
  wake_.notify_all();
}

void LiveHost::appWrote() {
  {
    std::lock_guard lock(mutex_);
    pending_.appWrote = true;
  }
  wake_.notify_all();
}

void LiveHost::run() {
  // The source reads the page's zone and locale at each ask, so an ask made
  // after the environment changed already uses the new one.
  auto source = [this](std::string_view kind, platform::Date at) -> TimelineOutcome {
    auto settings = processSettings(this->settings());
    return workerTimelineSource(timelines_, std::move(settings))(kind, at);
  };
  std::unique_lock lock(mutex_);
  const auto start = clock_.now();
  lock.unlock();
  WidgetHost widgetHost(start, source, {}, options_);
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) widgetHost.place(widget.kind);
  lock.lock();
  while (!stopping_) {
    const Pending pending = std::exchange(pending_, {});
    const auto target = clock_.now();
    lock.unlock();
    step(widgetHost, pending, target);
    const auto next = widgetHost.nextEventTime();
    lock.lock();
    const bool idle = !pending_.appWrote && !pending_.environmentChanged && !pending_.clockSet;
    if (stopping_ || !idle) continue;
    const auto seconds = std::min(secondsUntilNextEvent(next).value_or(kLongestSleep), kLongestSleep);
    if (seconds > 0) wake_.wait_for(lock, std::chrono::duration<double>(seconds));
  }
}

void LiveHost::step(WidgetHost& widgetHost, const Pending& pending, platform::Date target) {
  if (pending.clockSet) widgetHost.setClock(target);
  else widgetHost.advanceTo(target);
  if (pending.environmentChanged) widgetHost.environmentChanged();
  if (pending.appWrote) widgetHost.appWroteJournal();
  std::vector<PlacedWidgetView> widgets;
  for (auto& state : widgetHost.widgets()) {
    const auto family = familyOf(state.kind);
    widgets.push_back({std::move(state), family});
  }
  publish(widgets, widgetHost.now());
}

void LiveHost::publish(const std::vector<PlacedWidgetView>& widgets, platform::Date at) {
  std::vector<std::pair<std::string, std::uint64_t>> changed;
  {
    std::lock_guard lock(mutex_);
    for (const auto& widget : widgets) {
      const auto before = std::find_if(published_.begin(), published_.end(),
                                       [&](const auto& old) { return old.state.kind == widget.state.kind; });
      if (before == published_.end() || before->state.version != widget.state.version) {
        changed.emplace_back(widget.state.kind, widget.state.version);
      }
    }
    published_ = widgets;
    publishedAt_ = at;
  }
  if (listener_) {
    for (const auto& [kind, version] : changed) listener_(kind, version);
  }
}

// Called with the lock held.
std::optional<double> LiveHost::secondsUntilNextEvent(const std::optional<platform::Date>& next) const {
  if (!next) return std::nullopt;
  const auto real = clock_.realTimeOf(*next);
  if (!real) return std::nullopt;
  return std::max(0.0,
                  real->timeIntervalSinceReferenceDate() - HostClock::systemTime().timeIntervalSinceReferenceDate());
}

}  // namespace quillan::host
