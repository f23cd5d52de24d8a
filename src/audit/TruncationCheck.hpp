#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Texts cut so short that what shows no longer says what they are.
std::vector<Finding> findHiddenPoints(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
