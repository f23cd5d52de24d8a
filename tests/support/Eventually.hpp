#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace quillan::testing {

// Polls `condition` until it holds or `limit` passes; whether it held.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(60)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (std::chrono::steady_clock::now() < end) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return condition();
}

}  // namespace quillan::testing
