#pragma once

#include "render/WidgetInspection.hpp"

namespace quillan::audit {

// Whether the centre of pixel (x, y) of the widget's picture lies inside the
// mask that clips everything drawn: what the widget shows of it at all.
bool insideWidgetMask(const render::WidgetInspection& widget, int x, int y);

}  // namespace quillan::audit
