#include "host/RollingWindow.hpp"

#include <algorithm>

namespace quillan::host {
namespace {

platform::Date windowStart(platform::Date now) { return now.addingTimeInterval(-kRollingWindowSeconds); }

}  // namespace

void RollingWindow::record(platform::Date at) {
  while (!instants_.empty() && instants_.front() <= windowStart(at)) instants_.pop_front();
  instants_.insert(std::upper_bound(instants_.begin(), instants_.end(), at), at);
}

std::size_t RollingWindow::countAt(platform::Date now) const {
  const auto first = std::upper_bound(instants_.begin(), instants_.end(), windowStart(now));
  const auto last = std::upper_bound(first, instants_.end(), now);
  return static_cast<std::size_t>(last - first);
}

platform::Date RollingWindow::firstMomentBelow(std::size_t limit, platform::Date now) const {
  const auto count = countAt(now);
  if (count < limit) return now;
  const auto oldestInWindow = std::upper_bound(instants_.begin(), instants_.end(), windowStart(now));
  // Once `count - limit + 1` instants have left, `limit - 1` remain.
  const auto lastToLeave = oldestInWindow + static_cast<std::ptrdiff_t>(count - limit);
  return lastToLeave->addingTimeInterval(kRollingWindowSeconds);
}

void RollingWindow::forgetAfter(platform::Date at) {
  while (!instants_.empty() && instants_.back() > at) instants_.pop_back();
}

}  // namespace quillan::host
