#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Every check on one inspected widget, in the checks' order; the pixel checks
// run only when the inspection carries a picture. The findings name no case:
// the caller knows it.
std::vector<Finding> auditWidget(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
