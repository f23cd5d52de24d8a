#pragma once

#include <string_view>

#include "render/FontDescription.hpp"
#include "render/Geometry.hpp"
#include "render/Rgba.hpp"

typedef struct _cairo cairo_t;

namespace quillan::render {

// Draws a symbol image into `box` with our own vector drawings of the system
// symbols the widgets use: "checkmark", "square.and.pencil" and
// "square.and.pencil.circle.fill" (a disc in `primary` with the square and
// pencil cut out of it, and drawn again in `secondary` as the second layer).
// Strokes thicken with `weight` as the symbol set's weights do. Unknown names
// draw a rounded outline so a missing drawing is visible.
void drawSymbol(cairo_t* cr, std::string_view name, Rect box, FontWeight weight, Rgba primary, Rgba secondary);

}  // namespace quillan::render
