#include "platform/Clock.hpp"

#include <chrono>
#include <mutex>

namespace quillan::platform {
namespace {

std::mutex& pinMutex() {
  static std::mutex mutex;
  return mutex;
}

std::optional<Date>& pinnedDate() {
  static std::optional<Date> date;
  return date;
}

Date systemNow() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::fromUnixSeconds(std::chrono::duration<double>(sinceEpoch).count());
}

}  // namespace

Date Clock::now() {
  if (const auto date = pinned()) return *date;
  return systemNow();
}

void Clock::pin(Date date) {
  const std::lock_guard lock(pinMutex());
  pinnedDate() = date;
}

void Clock::unpin() {
  const std::lock_guard lock(pinMutex());
  pinnedDate().reset();
}

std::optional<Date> Clock::pinned() {
  const std::lock_guard lock(pinMutex());
  return pinnedDate();
}

}  // namespace quillan::platform
