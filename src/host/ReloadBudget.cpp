#include "host/ReloadBudget.hpp"

#include <stdexcept>
#include <string>

namespace quillan::host {

ReloadBudget::ReloadBudget(int limit) : limit_(limit) {
  if (limit < 1 || limit > kMaxLimit) {
    throw std::invalid_argument("reload budget must be between 1 and " + std::to_string(kMaxLimit) +
                                " reloads per 24 h, got " + std::to_string(limit));
  }
}

platform::Date ReloadBudget::nextSlot(platform::Date at) const {
  return charged_.firstMomentBelow(static_cast<std::size_t>(limit_), at);
}

void ReloadBudget::record(ReloadReason reason, platform::Date at) { windowFor(reason).record(at); }

ReloadCounts ReloadBudget::countsAt(platform::Date now) const {
  return {static_cast<int>(charged_.countAt(now)), static_cast<int>(app_.countAt(now)),
          static_cast<int>(system_.countAt(now)), static_cast<int>(deferred_.countAt(now))};
}

void ReloadBudget::forgetAfter(platform::Date at) {
  for (auto* window : {&charged_, &app_, &system_, &deferred_}) window->forgetAfter(at);
}

RollingWindow& ReloadBudget::windowFor(ReloadReason reason) {
  if (isChargedToBudget(reason)) return charged_;
  switch (reason) {
    case ReloadReason::app: return app_;
    case ReloadReason::budgetDeferred: return deferred_;
    default: return system_;
  }
}

}  // namespace quillan::host
