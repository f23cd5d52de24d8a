#include "audit/WidgetMask.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::audit {

bool insideWidgetMask(const render::WidgetReview& widget, int x, int y) {
  const double px = (x + 0.5) / widget.scale;
  const double py = (y + 0.5) / widget.scale;
  const double width = widget.size.width;
  const double height = widget.size.height;
  if (px < 0 || py < 0 || px > width || py > height) return false;
  const double radius = widget.circularMask ? std::min(width, height) / 2
                                            : std::min(widget.cornerRadius, std::min(width, height) / 2);
  // Inside unless the point lies in a corner's square and outside that corner's circle.
  const double cx = std::clamp(px, radius, width - radius);
  const double cy = std::clamp(py, radius, height - radius);
  return std::hypot(px - cx, py - cy) <= radius;
}

}  // namespace quillan::audit
