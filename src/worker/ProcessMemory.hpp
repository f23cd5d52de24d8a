#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>

namespace quillan::worker {

// The peak resident set of a running process (VmHWM in /proc/<pid>/status),
// in kilobytes; empty once it has exited or when /proc cannot tell.
std::optional<std::int64_t> peakResidentKilobytes(pid_t pid);

// The current resident set of a running process (VmRSS), in kilobytes.
std::optional<std::int64_t> residentKilobytes(pid_t pid);

}  // namespace quillan::worker
