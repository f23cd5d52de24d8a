#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Texts against what is painted behind them, sampled from the picture around their glyphs: below
// minimumContrast (WCAG 2.x, 4.5:1), or minimumLargeTextContrast (3:1) for large text (18 pt, or 14 pt bold).
std::vector<Finding> findLowContrast(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
