#include "host/ReloadReason.hpp"

namespace quillan::host {

std::string_view reloadReasonName(ReloadReason reason) {
  switch (reason) {
    case ReloadReason::placed: return "placed";
    case ReloadReason::policy: return "policy";
    case ReloadReason::retry: return "retry";
    case ReloadReason::budgetDeferred: return "budget-deferred";
    case ReloadReason::app: return "app";
    case ReloadReason::environment: return "environment";
    case ReloadReason::timeChange: return "time-change";
  }
  return "unknown";
}

bool isChargedToBudget(ReloadReason reason) { return reason == ReloadReason::policy || reason == ReloadReason::retry; }

}  // namespace quillan::host
