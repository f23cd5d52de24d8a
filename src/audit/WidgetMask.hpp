#pragma once

#include "render/WidgetReview.hpp"

namespace quillan::audit {

// Whether the centre of pixel (x, y) of the widget's picture lies inside the
// mask that clips everything drawn: what the widget shows of it at all.
bool insideWidgetMask(const render::WidgetReview& widget, int x, int y);

}  // namespace quillan::audit
