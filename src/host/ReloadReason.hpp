#pragma once

#include <string_view>

namespace quillan::host {

// Why the host asks a provider for a new timeline. Only the reloads a widget's
// own timeline asks for (its policy, and the retries after a failed ask) are
// charged to its budget; the others are the app's or the host's, and free, as
// on the phone (the app in the foreground, a locale change, a significant time
// change).
enum class ReloadReason {
  placed,          // the widget was added to the screen
  policy,          // the timeline's reload policy came due
  retry,           // the last ask failed and the host tries again
  budgetDeferred,  // a charged reload came due over budget and waits (no ask)
  app,             // the app reloaded all timelines
  environment,     // the zone, locale or another setting the views read changed
  timeChange,      // the clock was set, backwards or across a gap not lived through
};

// The name used in event logs and the host's API: "placed", "policy", "retry",
// "budget-deferred", "app", "environment", "time-change".
std::string_view reloadReasonName(ReloadReason reason);

// Whether a reload for this reason uses up one of the widget's budgeted reloads.
bool isChargedToBudget(ReloadReason reason);

}  // namespace quillan::host
