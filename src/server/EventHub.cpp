#include "server/EventHub.hpp"

namespace quillan::server {

void EventHub::publish(const std::string& name, const std::string& data) {
  {
    std::lock_guard lock(mutex_);
    // Data with a line break would end the event early; JSON has none.
    events_.push_back({nextSequence_++, "event: " + name + "\ndata: " + data + "\n\n"});
    if (events_.size() > kKeptEvents) events_.pop_front();
  }
  published_.notify_all();
}

std::uint64_t EventHub::nextSequence() const {
  std::lock_guard lock(mutex_);
  return nextSequence_;
}

std::optional<EventHub::Event> EventHub::next(std::uint64_t sequence, std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  const bool arrived = published_.wait_for(lock, timeout, [&] { return closed_ || sequence < nextSequence_; });
  if (!arrived || closed_) return std::nullopt;
  for (const auto& event : events_) {
    if (event.sequence >= sequence) return event;
  }
  return std::nullopt;
}

void EventHub::close() {
  {
    std::lock_guard lock(mutex_);
    closed_ = true;
  }
  published_.notify_all();
}

bool EventHub::closed() const {
  std::lock_guard lock(mutex_);
  return closed_;
}

}  // namespace quillan::server
