#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Two texts whose frames overlap. Frames include the lines' leading, so this is a hint; the
// ink check says whether the letters themselves collide.
std::vector<Finding> findOverlappingTexts(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
