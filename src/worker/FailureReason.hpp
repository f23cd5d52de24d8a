#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::worker {

// Why the warm worker ended a child before it finished on its own.
enum class ChildKill { none, deadline, memory, oversizedAnswer };

// How an evaluating child ended, as the warm worker saw it.
struct ChildEnd {
  int waitStatus = 0;  // as wait4 reports it
  ChildKill killedFor = ChildKill::none;
  std::int64_t peakKilobytes = 0;
  std::string stderrText;
  bool answered = false;                 // a whole answer arrived
  std::optional<std::string> exception;  // what the extension threw, if it did
};

struct FailureLimits {
  std::chrono::milliseconds deadline;
  std::int64_t memoryCeilingBytes;
};

// The one-line reason the evaluation failed, or empty when it answered:
//   "exceeded the deadline of 5 s"
//   "exceeded the memory ceiling of 30 MB (peak 41 MB)" (also for a child
//     that finished, when its peak, read at the end, was over the ceiling)
//   "<source>: Fatal error: <message>" (the report the child printed)
//   "stopped without a message" (the silent stop: an abort with nothing said)
//   "killed by signal N", "exited with status N" (with the last line of
//     standard error, if any, after a colon)
std::optional<std::string> failureReason(const ChildEnd& end, const FailureLimits& limits);

// The last "<source>: Fatal error: <message>" line of `stderrText`, if any.
std::optional<std::string> fatalReport(std::string_view stderrText);

// "5", "0.25": seconds without trailing zeros.
std::string secondsText(std::chrono::milliseconds duration);
// "30", "0.5": mebibytes to one decimal, rounded up (a peak just over the
// ceiling never reads as equal to it).
std::string megabytesText(std::int64_t bytes);

}  // namespace quillan::worker
