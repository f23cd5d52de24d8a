#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>

namespace quillan::audit {

// One line on a terminal, written over itself: cases done of all, findings so
// far and the time left at the pace so far. Written at most a few times a
// second; nothing at all when `shown` is false (output not a terminal).
class ProgressLine {
 public:
  ProgressLine(std::ostream& out, bool shown, std::size_t cases);

  void update(std::size_t casesDone, std::size_t findings);
  // Clears the line, so that what follows starts on an empty one.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;
  std::ostream& out_;
  bool shown_;
  std::size_t cases_;
  Clock::time_point started_ = Clock::now();
  Clock::time_point lastWritten_ = {};
};

}  // namespace quillan::audit
