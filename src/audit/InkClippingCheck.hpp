#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Texts whose glyphs put ink where the widget's mask cuts it: measured from the glyphs drawn, not
// their frames, so accents and descenders past a frame that fits count too.
std::vector<Finding> findClippedInk(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
