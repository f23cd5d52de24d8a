#include "host/CommitDebounce.hpp"

#include <algorithm>

namespace quillan::host {

CommitDebounce::CommitDebounce(Timing timing, std::optional<JournalCommitMark> settled)
    : timing_(timing), settled_(std::move(settled)) {}

void CommitDebounce::written(Clock::time_point at) {
  if (!burst_) {
    const bool afterQuiet = !lastWrite_ || at >= *lastWrite_ + timing_.quiet;
    burst_ = Burst{at, at, afterQuiet, false};
  }
  burst_->last = at;
  lastWrite_ = at;
}

bool CommitDebounce::reloadDue(Clock::time_point at, const std::optional<JournalCommitMark>& mark) {
  if (!burst_) return false;
  if (burst_->leading && !burst_->reloaded && mark && (!settled_ || committedSince(*settled_, *mark))) {
    settled_ = mark;
    burst_->reloaded = true;
    return true;
  }
  if (at < endOf(*burst_)) return false;
  return endBurst(mark);
}

bool CommitDebounce::endBurst(const std::optional<JournalCommitMark>& mark) {
  const bool due = !burst_->reloaded || !mark || committedSince(*settled_, *mark);
  burst_.reset();
  settled_ = mark;
  return due;
}

std::optional<CommitDebounce::Clock::time_point> CommitDebounce::nextCheck(Clock::time_point now) const {
  if (!burst_) return std::nullopt;
  const auto end = endOf(*burst_);
  if (burst_->leading && !burst_->reloaded) return std::min(end, now + timing_.settleCheck);
  return end;
}

CommitDebounce::Clock::time_point CommitDebounce::endOf(const Burst& burst) const {
  return std::min(burst.last + timing_.quiet, burst.first + timing_.longest);
}

}  // namespace quillan::host
