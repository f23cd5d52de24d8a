#include "host/WidgetPictures.hpp"

#include <stdexcept>

#include "host/RetryDelay.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::host {
namespace {

std::string viewKey(const PlacedWidgetView& widget, platform::Date entry, const views::Environment& environment,
                    const worker::ProcessSettings& process) {
  nlohmann::json key = {widget.state.kind,
                        widget.state.version,
                        entry.timeIntervalSinceReferenceDate(),
                        views::toString(environment.colorScheme),
                        views::toString(environment.renderingMode),
                        environment.platformVersion.toString(),
                        views::toString(environment.family),
                        process.timeZone.value_or(""),
                        process.locale.value_or("")};
  return key.dump();
}

// The entry on screen; before any has come, the first of the timeline (the
// widget's placeholder on the phone), or, with no timeline, the instant itself.
platform::Date entryShown(const WidgetState& state, platform::Date at) {
  if (state.entry) return *state.entry;
  if (!state.entryDates.empty()) return state.entryDates.front();
  return at;
}

}  // namespace

WidgetPictures::WidgetPictures(std::vector<std::unique_ptr<worker::WidgetWorker>> workers, SchedulerOptions retries)
    : workers_(std::move(workers)), retries_(retries) {
  if (workers_.empty()) throw std::invalid_argument("WidgetPictures needs at least one worker");
  checkSchedulerOptions(retries_);
  for (const auto& worker : workers_) idle_.push_back(worker.get());
}

worker::ViewEvaluation WidgetPictures::evaluationOf(const PlacedWidgetView& widget, const HostEnvironment& settings,
                                                    platform::Date at) {
  return {widget.state.kind, entryShown(widget.state, at), at, viewEnvironment(settings, widget.family),
          processSettings(settings)};
}

std::optional<std::string> WidgetPictures::knownFailure(const PlacedWidgetView& widget,
                                                        const HostEnvironment& settings) {
  // The entry shown is known once a timeline arrived; the instant only stands in when there is none.
  const auto evaluation = evaluationOf(widget, settings, platform::Date());
  const auto key = viewKey(widget, evaluation.entryDate, evaluation.environment, evaluation.settings);
  std::lock_guard lock(viewsMutex_);
  const auto known = views_.find(key);
  if (known == views_.end() || known->second.failures == 0) return std::nullopt;
  // A retry under way is not waited for.
  if (known->second.outcome.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return std::nullopt;
  if (const auto* reason = std::get_if<std::string>(&known->second.outcome.get())) return *reason;
  return std::nullopt;
}

bool WidgetPictures::dueForRetry(const Remembered& view) const {
  return view.failures > 0 && RealClock::now() >= view.retryAt;
}

bool WidgetPictures::retryIfDue(const PlacedWidgetView& widget, const HostEnvironment& settings, platform::Date at) {
  const auto evaluation = evaluationOf(widget, settings, at);
  const auto key = viewKey(widget, evaluation.entryDate, evaluation.environment, evaluation.settings);
  {
    std::lock_guard lock(viewsMutex_);
    const auto known = views_.find(key);
    if (known == views_.end() || !dueForRetry(known->second)) return false;
  }
  view(widget, settings, at);
  return true;
}

// Called by the request that evaluated, once its outcome is set: only then
// may a retry be due, so requests that were waiting for it get this answer.
void WidgetPictures::settle(const std::string& key, int attempt, bool failed) {
  std::lock_guard lock(viewsMutex_);
  const auto known = views_.find(key);
  // A view forgotten, or being built again, meanwhile is left alone.
  if (known == views_.end() || known->second.attempt != attempt) return;
  auto& view = known->second;
  view.failures = failed ? view.failures + 1 : 0;
  if (!failed) return;
  const auto delay = std::chrono::duration<double>(retryDelay(view.failures, retries_));
  view.retryAt = RealClock::now() + std::chrono::duration_cast<RealClock::duration>(delay);
}

ViewOutcome WidgetPictures::view(const PlacedWidgetView& widget, const HostEnvironment& settings, platform::Date at) {
  const auto evaluation = evaluationOf(widget, settings, at);
  const auto key = viewKey(widget, evaluation.entryDate, evaluation.environment, evaluation.settings);
  std::promise<ViewOutcome> promise;
  std::shared_future<ViewOutcome> future;
  int attempt = 0;
  {
    std::lock_guard lock(viewsMutex_);
    auto known = views_.find(key);
    if (known != views_.end() && !dueForRetry(known->second)) {
      future = known->second.outcome;
    } else {
      if (known == views_.end()) {
        known = views_.emplace(key, Remembered{}).first;
        order_.push_back(key);
        if (order_.size() > kRememberedViews) {
          views_.erase(order_.front());
          order_.pop_front();
        }
      }
      // A retry keeps the count of failures in a row, so the waits grow.
      future = promise.get_future().share();
      known->second.outcome = future;
      known->second.retryAt = RealClock::time_point::max();
      attempt = ++known->second.attempt;
    }
  }
  // The request that made the entry, or found it due again, evaluates; the
  // others wait for its answer.
  if (attempt == 0) return future.get();
  auto outcome = evaluate(evaluation);
  const bool failed = std::holds_alternative<std::string>(outcome);
  promise.set_value(std::move(outcome));
  settle(key, attempt, failed);
  return future.get();
}

ViewOutcome WidgetPictures::evaluate(const worker::ViewEvaluation& evaluation) {
  auto& worker = acquire();
  struct Release {
    WidgetPictures& pictures;
    worker::WidgetWorker& worker;
    ~Release() { pictures.release(worker); }
  } release{*this, worker};
  try {
    const auto answer = worker.view(evaluation);
    if (const auto* failure = answer.failure()) return failure->reason;
    auto view = std::make_shared<EntryView>();
    view->json = *answer.value();
    view->tree = views::decodeViewTree(view->json);
    return view;
  } catch (const std::exception& error) {
    // A view the decoder refuses fails like an extension that stopped.
    return std::string(error.what());
  }
}

worker::WidgetWorker& WidgetPictures::acquire() {
  std::unique_lock lock(workersMutex_);
  workerFree_.wait(lock, [this] { return !idle_.empty(); });
  auto* worker = idle_.back();
  idle_.pop_back();
  return *worker;
}

void WidgetPictures::release(worker::WidgetWorker& worker) {
  {
    std::lock_guard lock(workersMutex_);
    idle_.push_back(&worker);
  }
  workerFree_.notify_one();
}

}  // namespace quillan::host
