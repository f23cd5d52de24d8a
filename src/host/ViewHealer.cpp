#include "host/ViewHealer.hpp"

namespace quillan::host {

ViewHealer::ViewHealer(const LiveHost& host, WidgetPictures& pictures, Rebuilt rebuilt,
                       std::chrono::milliseconds period)
    : host_(host), pictures_(pictures), rebuilt_(std::move(rebuilt)), period_(period) {
  thread_ = std::thread([this] { run(); });
}

ViewHealer::~ViewHealer() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void ViewHealer::run() {
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, period_, [this] { return stopping_; })) {
    lock.unlock();
    retryDueViews();
    lock.lock();
  }
}

void ViewHealer::retryDueViews() {
  const auto settings = host_.settings();
  const auto at = host_.publishedAt();
  for (const auto& widget : host_.widgets()) {
    if (pictures_.retryIfDue(widget, settings, at)) rebuilt_(widget.state.kind, widget.state.version);
  }
}

}  // namespace quillan::host
