#pragma once

#include <cstdint>

#include "worker/WidgetWorker.hpp"

namespace quillan::testing {

// The worker options of suites that test answers rather than limits. The
// address sanitizer's shadow memory triples a child's resident set, which is
// no part of the extension's footprint; the ceiling itself is tested against
// a measured baseline.
inline worker::WorkerOptions answeringOptions() {
  worker::WorkerOptions options;
#if defined(__SANITIZE_ADDRESS__)
  options.memoryCeilingBytes = std::int64_t{1024} * 1024 * 1024;
#endif
  return options;
}

}  // namespace quillan::testing
