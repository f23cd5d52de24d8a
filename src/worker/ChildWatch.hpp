#pragma once

#include <sys/types.h>

#include <chrono>

#include "worker/FailureReason.hpp"

namespace quillan::worker {

// Watches an evaluating child until it ends: collects its answer (read from
// `answerFd` to end of file) and its standard error (`stderrFd`), kills it
// with SIGKILL when it runs past `limits.deadline` (counted from `started`) or
// its peak resident memory passes the ceiling, and reaps it. Closes both fds.
ChildEnd watchChild(pid_t pid, int answerFd, int stderrFd, const FailureLimits& limits,
                    std::chrono::milliseconds sampleInterval, std::chrono::steady_clock::time_point started,
                    std::string& answerText);

}  // namespace quillan::worker
