#pragma once

#include "render/Geometry.hpp"
#include "render/Rgba.hpp"
#include "render/TextLayout.hpp"

typedef struct _cairo cairo_t;

namespace quillan::render {

// Where each laid-out line sits across the text's frame: lines start at the
// leading edge, the right one when the layout runs right to left.
enum class LineAlignment { left, right };

// Draws the Pango layouts measuring made (TextLayout's `shaped`), so drawn
// text is exactly what was measured; link runs take `linkColor`.
struct PangoLineDrawing {
  static void drawText(cairo_t* cr, const TextLayout& text, Rect frame, LineAlignment alignment, Rgba color,
                       Rgba linkColor);
};

// The left edge of line `index` of `text` in a frame of `frameWidth`.
double lineOffset(const TextLayout& text, std::size_t index, double frameWidth, LineAlignment alignment);

}  // namespace quillan::render
