#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Elements whose frame leaves the widget (its mask clips them) and texts whose lines need more room than their frame
// gives.
std::vector<Finding> findClippedElements(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
