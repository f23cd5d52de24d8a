#pragma once

#include <string>

#include "widgets/TimelineAnswer.hpp"

namespace quillan::hosting {

// A provider's answer as one line of JSON, dates in the current zone with their
// offset: {"entries":[{"date":...}],"policy":{"type":"after","date":...}}.
// Snapshots and placeholders carry no policy, so it is left out.
std::string timelineJson(const widgets::TimelineAnswer& answer);

}  // namespace quillan::hosting
