#include "render/ShapePath.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace quillan::render {

namespace {

void roundedRect(cairo_t* cr, Rect r, double radius) {
  radius = std::clamp(radius, 0.0, std::min(r.width, r.height) / 2);
  cairo_new_sub_path(cr);
  cairo_move_to(cr, r.x + radius, r.y);
  cairo_arc(cr, r.maxX() - radius, r.y + radius, radius, -M_PI / 2, 0);
  cairo_arc(cr, r.maxX() - radius, r.maxY() - radius, radius, 0, M_PI / 2);
  cairo_arc(cr, r.x + radius, r.maxY() - radius, radius, M_PI / 2, M_PI);
  cairo_arc(cr, r.x + radius, r.y + radius, radius, M_PI, 3 * M_PI / 2);
  cairo_close_path(cr);
}

void ellipse(cairo_t* cr, Rect r) {
  if (r.width <= 0 || r.height <= 0) return;
  cairo_save(cr);
  cairo_translate(cr, r.center().x, r.center().y);
  cairo_scale(cr, r.width / 2, r.height / 2);
  cairo_new_sub_path(cr);
  cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
  cairo_close_path(cr);
  cairo_restore(cr);
}

}  // namespace

double containerRelativeRadius(Rect frame, Size widget, double outer) {
  const double inset = std::min({frame.x, frame.y, widget.width - frame.maxX(), widget.height - frame.maxY()});
  return std::max(0.0, outer - std::max(0.0, inset));
}

double strokeBorderRadius(Rect frame, double lineWidth) {
  return std::min(frame.width, frame.height) / 2 - lineWidth / 2;
}

void appendShapePath(cairo_t* cr, ShapeKind kind, Rect rect, double cornerRadius) {
  switch (kind) {
    case ShapeKind::rectangle: cairo_rectangle(cr, rect.x, rect.y, rect.width, rect.height); break;
    case ShapeKind::roundedRectangle:
    case ShapeKind::containerRelative: roundedRect(cr, rect, cornerRadius); break;
    case ShapeKind::capsule: roundedRect(cr, rect, std::min(rect.width, rect.height) / 2); break;
    case ShapeKind::circle: {
      const double d = std::min(rect.width, rect.height);
      ellipse(cr, {rect.center().x - d / 2, rect.center().y - d / 2, d, d});
      break;
    }
    case ShapeKind::ellipse: ellipse(cr, rect); break;
  }
}

}  // namespace quillan::render
