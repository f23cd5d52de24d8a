#pragma once

#include <algorithm>

#include "render/Geometry.hpp"

namespace quillan::audit {

// The area two rectangles share; 0 when they only touch or lie apart.
inline double intersectionArea(const render::Rect& a, const render::Rect& b) {
  const double width = std::min(a.maxX(), b.maxX()) - std::max(a.x, b.x);
  const double height = std::min(a.maxY(), b.maxY()) - std::max(a.y, b.y);
  return width > 0 && height > 0 ? width * height : 0;
}

}  // namespace quillan::audit
