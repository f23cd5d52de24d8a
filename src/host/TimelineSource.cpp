#include "host/TimelineSource.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::host {
namespace {

bool isFinite(platform::Date date) { return std::isfinite(date.timeIntervalSinceReferenceDate()); }

}  // namespace

std::optional<std::string> timelineAnswerProblem(const widgets::TimelineAnswer& answer) {
  if (answer.entryDates.size() > kMaxTimelineEntries) {
    return "the timeline has " + std::to_string(answer.entryDates.size()) + " entries, more than the " +
           std::to_string(kMaxTimelineEntries) + " the host follows";
  }
  if (!std::all_of(answer.entryDates.begin(), answer.entryDates.end(), isFinite)) {
    return "the timeline has an entry whose date is not a finite number";
  }
  if (answer.policy && answer.policy->date() && !isFinite(*answer.policy->date())) {
    return "the timeline's reload date is not a finite number";
  }
  return std::nullopt;
}

}  // namespace quillan::host
