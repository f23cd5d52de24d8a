#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace quillan::server {

// The Server-Sent Events every open page receives: each published event gets
// a sequence number, and each subscriber reads from the number it has seen.
// Only the last kKeptEvents are kept; a page that falls further behind skips
// to the oldest kept one (it refetches the widgets on every event anyway).
class EventHub {
 public:
  static constexpr std::size_t kKeptEvents = 256;

  struct Event {
    std::uint64_t sequence;
    std::string text;  // "event: ...\ndata: ...\n\n"
  };

  // Formats and keeps one event; wakes every waiting subscriber.
  void publish(const std::string& name, const std::string& data);
  // The sequence number the next event will get: where a new subscriber starts.
  std::uint64_t nextSequence() const;
  // The first kept event from `sequence` on, waiting at most `timeout` for
  // one; empty on timeout or once closed.
  std::optional<Event> next(std::uint64_t sequence, std::chrono::milliseconds timeout);
  // Ends every subscription: waiting ones return at once.
  void close();
  bool closed() const;

 private:
  mutable std::mutex mutex_;
  std::condition_variable published_;
  std::deque<Event> events_;
  std::uint64_t nextSequence_ = 0;
  bool closed_ = false;
};

}  // namespace quillan::server
