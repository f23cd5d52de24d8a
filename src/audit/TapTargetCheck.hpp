#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Tap targets smaller than a finger (minimumTapSide on a side) and targets that overlap, where a tap lands on whichever
// is innermost.
std::vector<Finding> findTapTargetProblems(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
