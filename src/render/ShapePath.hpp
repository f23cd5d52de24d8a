#pragma once

#include "render/Geometry.hpp"
#include "render/LayoutNode.hpp"

typedef struct _cairo cairo_t;

namespace quillan::render {

// Corner radius of a ContainerRelativeShape at `frame` inside a widget of
// `widget` size with corner radius `outer`: concentric, shrinking by the inset.
double containerRelativeRadius(Rect frame, Size widget, double outer);

// The radius a strokeBorder's centre line runs at in a circle of `frame`.
double strokeBorderRadius(Rect frame, double lineWidth);

// Appends the outline of `kind` in `rect` to the current path. Circles and
// ellipses start at 3 o'clock and run clockwise on screen, rectangles at the
// top left, which is where dashes begin.
void appendShapePath(cairo_t* cr, ShapeKind kind, Rect rect, double cornerRadius);

}  // namespace quillan::render
