#pragma once

#include <string_view>
#include <vector>

#include "views/Color.hpp"
#include "views/UnitPoint.hpp"

namespace quillan::views {

struct GradientStop {
  Color color;
  double location = 0;  // 0 at the start point, 1 at the end point

  bool operator==(const GradientStop&) const = default;
};

// A linear gradient between two unit points of the frame it fills. As a node it
// fills its frame; as a shape style it fills a shape.
struct LinearGradient {
  static constexpr std::string_view type = "LinearGradient";
  std::vector<GradientStop> stops;
  UnitPoint startPoint = UnitPoint::top();
  UnitPoint endPoint = UnitPoint::bottom();

  // `LinearGradient(colors:startPoint:endPoint:)`: the colours spread evenly,
  // the first at location 0 and the last at 1.
  static LinearGradient evenlySpaced(const std::vector<Color>& colors, UnitPoint startPoint, UnitPoint endPoint);

  bool operator==(const LinearGradient&) const = default;
};

}  // namespace quillan::views
