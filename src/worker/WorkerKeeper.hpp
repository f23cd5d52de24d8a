#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>

#include "worker/WorkerOptions.hpp"

namespace quillan::worker {

// The keeper: a single-threaded, preloaded process forked from the host before
// the host starts threads. For each byte the host writes on `control` it forks
// a new warm worker and hands the host that worker's socket (as SCM_RIGHTS)
// and process id, so a warm worker that dies is replaced by a fork of a clean,
// single-threaded image rather than of the threaded host. Leaves when the
// host closes `control`.
[[noreturn]] void runWorkerKeeper(int control, const WorkerOptions& options);

struct WarmWorkerHandle {
  int socket = -1;
  pid_t pid = 0;
};

// Asks the keeper on `control` for a new warm worker; empty when the keeper
// is gone or does not answer within `timeout`.
std::optional<WarmWorkerHandle> requestWarmWorker(int control, std::chrono::milliseconds timeout);

}  // namespace quillan::worker
