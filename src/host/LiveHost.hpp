#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "host/ClockChange.hpp"
#include "host/HostClock.hpp"
#include "host/HostEnvironment.hpp"
#include "host/PlacedWidgetView.hpp"
#include "host/SchedulerOptions.hpp"
#include "host/WidgetHost.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::host {

// The phone's widget host, live: one thread owns the host, advances it to the
// host clock's instant, and sleeps until its next event or until the
// clock, the page's environment or the app's journal changes. Other threads
// only post changes and read the state the thread last published, so a
// request never waits for a provider, and the lock is never held while the
// worker evaluates.
//
// Pinning the clock is setting it, under WidgetHost's rule for a clock change.
class LiveHost {
 public:
  using PictureListener = std::function<void(const std::string& kind, std::uint64_t version)>;

  // Places the bundle's widgets, in gallery order, once start() runs.
  // `timelines` must outlive the host; only the host's thread uses it.
  LiveHost(worker::WidgetWorker& timelines, HostEnvironment settings, SchedulerOptions options, HostClock clock,
           PictureListener listener);
  ~LiveHost();
  LiveHost(const LiveHost&) = delete;
  LiveHost& operator=(const LiveHost&) = delete;

  void start();
  void stop();

  // The widgets as last published (from start() on every placed widget, at
  // first loading: no timeline and no failure yet) and the clock's instant now.
  std::vector<PlacedWidgetView> widgets() const;
  std::optional<PlacedWidgetView> widget(const std::string& kind) const;
  platform::Date now() const;
  // The scheduler's instant when it last published: what the views are built for.
  platform::Date publishedAt() const;
  HostEnvironment settings() const;

  void changeClock(const ClockChange& change);
  // Every widget is asked again under the new environment.
  void changeSettings(const HostEnvironment& settings);
  // The app committed to its journal: its "reload all timelines".
  void appWrote();

 private:
  struct Pending {
    bool appWrote = false;
    bool environmentChanged = false;
    bool clockSet = false;
  };

  void run();
  void publishPlaced();
  void step(WidgetHost& widgetHost, const Pending& pending, platform::Date target);
  void publish(const std::vector<PlacedWidgetView>& widgets, platform::Date at);
  std::optional<double> secondsUntilNextEvent(const std::optional<platform::Date>& next) const;

  worker::WidgetWorker& timelines_;
  SchedulerOptions options_;
  PictureListener listener_;

  mutable std::mutex mutex_;
  std::condition_variable wake_;
  HostClock clock_;
  HostEnvironment settings_;
  Pending pending_;
  bool stopping_ = false;
  std::vector<PlacedWidgetView> published_;
  platform::Date publishedAt_;
  std::thread thread_;
};

}  // namespace quillan::host
