#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/HostEnvironment.hpp"
#include "host/PlacedWidgetView.hpp"
#include "host/SchedulerOptions.hpp"
#include "platform/Date.hpp"
#include "views/Node.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::host {

// A widget's view of one entry, as the extension built it.
struct EntryView {
  std::string json;  // the view tree as the worker answered it
  views::Node tree;
};

// Either the view, or why the extension gave none.
using ViewOutcome = std::variant<std::shared_ptr<const EntryView>, std::string>;

// The views the page draws, built by the extension in worker processes. As on
// the phone, an entry's view is built once and kept while the widget shows
// that entry: a view is remembered by the widget's picture version, the
// entry, and the environment it was built for, so the many requests of one
// picture (PNG, SVG, taps, several pages) cost one evaluation, and requests
// for the same view made at once wait for the same evaluation. At most
// kRememberedViews are kept, the oldest forgotten first.
//
// A view that failed (the journal locked or unreadable for a while) is built
// again once it is due, waiting as long as the scheduler waits before asking
// again for a failed timeline (retryDelay, counted in real time: the
// journal heals in real time whatever the host's clock does).
class WidgetPictures {
 public:
  static constexpr std::size_t kRememberedViews = 64;
  using RealClock = std::chrono::steady_clock;

  // The workers are made by the caller before any thread starts; evaluations
  // run on as many at once as there are workers.
  explicit WidgetPictures(std::vector<std::unique_ptr<worker::WidgetWorker>> workers, SchedulerOptions retries = {});

  // The view `widget` shows, built at `at` (the host's instant) under `settings`.
  ViewOutcome view(const PlacedWidgetView& widget, const HostEnvironment& settings, platform::Date at);
  // Why the view `widget` shows under `settings` failed, if it has been built
  // and failed; never waits nor evaluates.
  std::optional<std::string> knownFailure(const PlacedWidgetView& widget, const HostEnvironment& settings);
  // Builds the view `widget` shows again when it failed and its retry is
  // due; true when it did.
  bool retryIfDue(const PlacedWidgetView& widget, const HostEnvironment& settings, platform::Date at);

 private:
  struct Remembered {
    std::shared_future<ViewOutcome> outcome;
    int attempt = 0;   // evaluations started for it
    int failures = 0;  // failed in a row, counted as each one ends
    RealClock::time_point retryAt = RealClock::time_point::max();
  };

  bool dueForRetry(const Remembered& view) const;
  void settle(const std::string& key, int attempt, bool failed);
  ViewOutcome evaluate(const worker::ViewEvaluation& evaluation);
  static worker::ViewEvaluation evaluationOf(const PlacedWidgetView& widget, const HostEnvironment& settings,
                                             platform::Date at);
  worker::WidgetWorker& acquire();
  void release(worker::WidgetWorker& worker);

  std::mutex workersMutex_;
  std::condition_variable workerFree_;
  std::vector<std::unique_ptr<worker::WidgetWorker>> workers_;
  std::vector<worker::WidgetWorker*> idle_;

  SchedulerOptions retries_;
  std::mutex viewsMutex_;
  std::map<std::string, Remembered> views_;
  std::deque<std::string> order_;
};

}  // namespace quillan::host
