#pragma once

#include <vector>

#include "render/Geometry.hpp"
#include "render/Rgba.hpp"

namespace quillan::render {

struct GradientStop {
  Rgba color;
  double location = 0;
  bool operator==(const GradientStop&) const = default;
};

// How an area is filled: nothing, one colour, or a linear gradient whose
// start and end are unit points of the filled rect.
struct Paint {
  enum class Kind { none, solid, linearGradient };
  Kind kind = Kind::none;
  Rgba color;
  std::vector<GradientStop> stops;
  Point start{0.5, 0};
  Point end{0.5, 1};

  static Paint none() { return {}; }
  static Paint solid(Rgba c) { return {Kind::solid, c, {}, {0.5, 0}, {0.5, 1}}; }
  static Paint gradient(std::vector<GradientStop> stops, Point start, Point end) {
    return {Kind::linearGradient, {}, std::move(stops), start, end};
  }
  bool isVisible() const { return kind != Kind::none; }
  bool operator==(const Paint&) const = default;
};

enum class LineCap { butt, round, square };
enum class LineJoin { miter, round, bevel };

// A stroke; `inset` strokes the shape's inner border (strokeBorder), so the
// stroke lies entirely inside the frame.
struct StrokeStyle {
  double lineWidth = 1;
  LineCap cap = LineCap::butt;
  LineJoin join = LineJoin::miter;
  double miterLimit = 10;
  std::vector<double> dash;
  double dashPhase = 0;
  bool inset = false;
  bool operator==(const StrokeStyle&) const = default;
};

}  // namespace quillan::render
