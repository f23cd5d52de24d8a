#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// A text with glyphs no font could draw (hex boxes or blanks): the reader sees boxes.
std::vector<Finding> findMissingGlyphs(const render::WidgetReview& widget, const AuditThresholds& thresholds);

}  // namespace quillan::audit
