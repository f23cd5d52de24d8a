#include "render/SymbolDrawing.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>

#include "render/CairoColor.hpp"
#include "render/RenderingConstants.hpp"

namespace quillan::render {

namespace {

// Visible gap between the pencil's bar and its cap, in units of the box.
constexpr double kPencilCapGap = 0.04;
// The pencil's width at the regular weight, in units of the box.
constexpr double kPencilBarWidth = 0.14;

bool isVectorSurface(cairo_t* cr) {
  const auto type = cairo_surface_get_type(cairo_get_target(cr));
  return type == CAIRO_SURFACE_TYPE_SVG || type == CAIRO_SURFACE_TYPE_PDF;
}

// Strokes of one layer overlap at their round caps; drawing the layer opaque
// and compositing it once keeps a translucent colour even. The clip keeps the
// group as small as the symbol (with room for strokes and caps past `box`):
// a group covers the clip, and one the size of the picture would cost a
// composite of the whole picture per layer.
//
// An opaque layer looks the same drawn straight onto a vector surface, and
// there it is: Cairo's SVG and PDF surfaces keep a few hundred bytes of every
// group for good, which a live host drawing SVG all day would pile up.
// `ownLayer` is for a layer that clears parts of itself, which needs the group
// whatever its colour.
template <typename Draw>
void paintLayer(cairo_t* cr, Rgba color, Rect box, Draw draw, bool ownLayer = false) {
  if (color.alpha >= 1 && !ownLayer && isVectorSurface(cr)) {
    cairo_save(cr);
    setSourceColor(cr, color);
    draw();
    cairo_restore(cr);
    return;
  }
  cairo_save(cr);
  const double margin = std::max(box.width, box.height) / 2;
  cairo_new_path(cr);
  cairo_rectangle(cr, box.x - margin, box.y - margin, box.width + 2 * margin, box.height + 2 * margin);
  cairo_clip(cr);
  cairo_push_group(cr);
  setSourceColor(cr, {color.red, color.green, color.blue, 1});
  draw();
  cairo_pop_group_to_source(cr);
  cairo_paint_with_alpha(cr, color.alpha);
  cairo_restore(cr);
}

// Maps the unit box of a drawing onto `box`.
struct UnitBox {
  Rect box;
  double x(double u) const { return box.x + u * box.width; }
  double y(double v) const { return box.y + v * box.height; }
};

void strokeRound(cairo_t* cr, double width) {
  cairo_set_line_width(cr, width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(cr);
}

double strokeFactor(FontWeight weight) {
  return constants::kSymbolStrokeByWeight[static_cast<std::size_t>(weightClass(weight) / 100 - 1)];
}

void checkmark(cairo_t* cr, Rect box, FontWeight weight) {
  const UnitBox u{box};
  cairo_move_to(cr, u.x(0.06), u.y(0.55));
  cairo_line_to(cr, u.x(0.37), u.y(0.92));
  cairo_line_to(cr, u.x(0.95), u.y(0.08));
  strokeRound(cr, constants::kSymbolStrokePerHeight * box.height * 1.3 * strokeFactor(weight));
}

// The pencil: a straight bar ending in a pointed tip near the square's centre,
// and beyond a thin gap at the other end a short cap with a rounded top.
void pencil(cairo_t* cr, const UnitBox& u, double barWidth) {
  const Point tip{0.42, 0.58}, end{0.95, 0.05};
  const double dx = end.x - tip.x, dy = end.y - tip.y, length = std::hypot(dx, dy);
  const Point along{dx / length, dy / length}, across{-along.y, along.x};
  const double half = barWidth / 2, tipLength = barWidth * 1.1;
  const double capStart = 0.86 * length, barEnd = capStart - half - kPencilCapGap;
  const auto at = [&](double distance, double side) {
    return Point{tip.x + along.x * distance + across.x * side, tip.y + along.y * distance + across.y * side};
  };
  const Point corners[] = {at(tipLength, half), at(barEnd, half), at(barEnd, -half), at(tipLength, -half)};
  cairo_move_to(cr, u.x(tip.x), u.y(tip.y));
  for (const Point& p : corners) cairo_line_to(cr, u.x(p.x), u.y(p.y));
  cairo_close_path(cr);
  cairo_fill(cr);
  const Point capFrom = at(capStart, 0), capTo = at(length - half, 0);
  cairo_move_to(cr, u.x(capFrom.x), u.y(capFrom.y));
  cairo_line_to(cr, u.x(capTo.x), u.y(capTo.y));
  strokeRound(cr, barWidth * u.box.height);
}

// The open rounded square at the lower left and the pencil across its open
// top-right corner.
void squareAndPencil(cairo_t* cr, Rect box, FontWeight weight) {
  const UnitBox u{box};
  const double factor = strokeFactor(weight);
  const double stroke = constants::kSymbolStrokePerHeight * box.height * factor;
  const double left = 0.05, top = 0.15, side = 0.80, r = 0.2 * side;
  const double right = left + side, bottom = top + side;
  cairo_new_path(cr);
  cairo_move_to(cr, u.x(left + side * 0.55), u.y(top));
  cairo_line_to(cr, u.x(left + r), u.y(top));
  cairo_curve_to(cr, u.x(left), u.y(top), u.x(left), u.y(top), u.x(left), u.y(top + r));
  cairo_line_to(cr, u.x(left), u.y(bottom - r));
  cairo_curve_to(cr, u.x(left), u.y(bottom), u.x(left), u.y(bottom), u.x(left + r), u.y(bottom));
  cairo_line_to(cr, u.x(right - r), u.y(bottom));
  cairo_curve_to(cr, u.x(right), u.y(bottom), u.x(right), u.y(bottom), u.x(right), u.y(bottom - r));
  cairo_line_to(cr, u.x(right), u.y(top + side * 0.45));
  strokeRound(cr, stroke);
  // The bar thickens less than the outline: most of its width is the pencil's body.
  pencil(cr, u, kPencilBarWidth * std::sqrt(factor));
}

void circledSquareAndPencil(cairo_t* cr, Rect box, FontWeight weight, Rgba primary, Rgba secondary) {
  const double diameter = std::min(box.width, box.height);
  const Point c = box.center();
  const double inner = diameter * 0.5;
  const Rect glyph{c.x - inner / 2 - diameter * 0.02, c.y - inner / 2 + diameter * 0.02, inner, inner};
  paintLayer(
      cr, primary, box,
      [&] {
        cairo_arc(cr, c.x, c.y, diameter / 2, 0, 2 * M_PI);
        cairo_fill(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        squareAndPencil(cr, glyph, weight);
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
      },
      /*ownLayer=*/true);
  paintLayer(cr, secondary, box, [&] { squareAndPencil(cr, glyph, weight); });
}

}  // namespace

void drawSymbol(cairo_t* cr, std::string_view name, Rect box, FontWeight weight, Rgba primary, Rgba secondary) {
  cairo_save(cr);
  if (name == "checkmark") {
    paintLayer(cr, primary, box, [&] { checkmark(cr, box, weight); });
  } else if (name == "square.and.pencil") {
    paintLayer(cr, primary, box, [&] { squareAndPencil(cr, box, weight); });
  } else if (name == "square.and.pencil.circle.fill") {
    circledSquareAndPencil(cr, box, weight, primary, secondary);
  } else {
    setSourceColor(cr, primary);
    cairo_rectangle(cr, box.x, box.y, box.width, box.height);
    strokeRound(cr, 1);
  }
  cairo_restore(cr);
}

}  // namespace quillan::render
