#pragma once

#include <vector>

#include "render/Geometry.hpp"
#include "render/Rgba.hpp"
#include "views/StrokeStyle.hpp"

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

// A stroke as the view states it; `inset` strokes the shape's inner border
// (strokeBorder), so the stroke lies entirely inside the frame.
struct Stroke {
  views::StrokeStyle style;
  bool inset = false;
  bool operator==(const Stroke&) const = default;
};

}  // namespace quillan::render
