#pragma once

#include <array>
#include <vector>

#include "views/EnumNames.hpp"

namespace quillan::views {

enum class LineCap { butt, round, square };

constexpr auto enumNames(LineCap) {
  using enum LineCap;
  return std::array<EnumName<LineCap>, 3>{{{butt, "butt"}, {round, "round"}, {square, "square"}}};
}

enum class LineJoin { miter, round, bevel };

constexpr auto enumNames(LineJoin) {
  using enum LineJoin;
  return std::array<EnumName<LineJoin>, 3>{{{miter, "miter"}, {round, "round"}, {bevel, "bevel"}}};
}

// How a shape's outline is stroked. Defaults are the toolkit's; `dash` holds
// alternating on/off lengths, an odd count repeating ([5] = 5 on, 5 off), and
// `dashPhase` is how far into the pattern the path starts.
struct StrokeStyle {
  double lineWidth = 1;
  LineCap lineCap = LineCap::butt;
  LineJoin lineJoin = LineJoin::miter;
  double miterLimit = 10;
  std::vector<double> dash;
  double dashPhase = 0;

  bool operator==(const StrokeStyle&) const = default;
};

}  // namespace quillan::views
