#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Two texts whose glyphs put ink on the same pixels: one is written over the other.
std::vector<Finding> findOverlappingInk(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
