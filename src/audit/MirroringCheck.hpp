#pragma once

#include <vector>

#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/WidgetReview.hpp"

namespace quillan::audit {

// A right-to-left widget against the same case laid out left to right: every
// text and element both layouts hold must sit at the mirror image of its
// left-to-right place, and every link's tap target must follow. A view that
// reverses a row by hand under right to left, on top of the layout's own
// mirroring, shows up here as texts back where the left-to-right layout has
// them. Texts are matched by what they show (a reversed row keeps its paths
// but not its order), other elements by their path, targets by their URL.
std::vector<Finding> findUnmirroredElements(const render::WidgetReview& leftToRight,
                                            const render::WidgetReview& rightToLeft, const AuditThresholds& thresholds);

}  // namespace quillan::audit
