#pragma once

#include "render/RenderContext.hpp"
#include "render/WidgetLayout.hpp"

typedef struct _cairo cairo_t;

namespace quillan::render {

// Paints a laid-out widget in points onto `cr` (the caller sets the scale):
// backdrop for the lock-screen modes, background, content, redaction bars,
// all clipped to the widget's mask. Text shows the layouts measuring made. Rendering modes recolour every paint:
// vibrant to white with alpha = luminance x alpha, accented to one colour
// keeping only alpha; both drop the container background.
void paintWidget(cairo_t* cr, const WidgetLayout& widget, const RenderContext& context);

// The colour `color` becomes in `mode`.
Rgba colorForMode(Rgba color, views::WidgetRenderingMode mode, bool accentGroup = false);

}  // namespace quillan::render
