#pragma once

#include "render/Geometry.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/Rgba.hpp"

typedef struct _cairo cairo_t;

namespace quillan::render {

// Draws text with the measurer's own Pango layouts, so drawn text is exactly as
// wide as measured.
struct PangoLineDrawing {
  // One line with its baseline at `baseline`; link runs take `linkColor`.
  static void drawLine(cairo_t* cr, const PangoTextMeasurer& text, const StyledText& runs, Point baseline,
                       Rgba color, Rgba linkColor);
};

}  // namespace quillan::render
