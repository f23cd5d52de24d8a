#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/Date.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::host {

// An ask that produced no timeline, and why: the provider stopped, ran past its
// deadline or memory ceiling, or the journal could not be read.
struct TimelineFailure {
  std::string reason;
};

using TimelineOutcome = std::variant<widgets::TimelineAnswer, TimelineFailure>;

// Asks the provider of the widget `kind` for its timeline as it would answer
// at the instant `at` (the real one pins the extension's clock to `at` in a
// worker process). It is called only from the scheduler's own calls, and must
// not call back into the scheduler.
using TimelineSource = std::function<TimelineOutcome(std::string_view kind, platform::Date at)>;

// A timeline longer than this is refused rather than followed: the phone's
// widgets stop updating well before (reports put it near 400 entries), and a
// runaway provider must not fill the host's memory.
inline constexpr std::size_t kMaxTimelineEntries = 1000;

// What makes an answer unusable as a timeline, in one line; empty when it is
// usable. Dates must be finite (they are ordered and added to), and the
// entries at most kMaxTimelineEntries.
std::optional<std::string> timelineAnswerProblem(const widgets::TimelineAnswer& answer);

}  // namespace quillan::host
