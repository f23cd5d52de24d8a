#include "audit/ClippingCheck.hpp"

#include <algorithm>

namespace quillan::audit {

namespace {

// How far, in points, `frame` reaches past the nearest edge of `bounds` it crosses.
double overhang(const render::Rect& frame, const render::Rect& bounds) {
  return std::max({bounds.x - frame.x, frame.maxX() - bounds.maxX(), bounds.y - frame.y, frame.maxY() - bounds.maxY(),
                   0.0});
}

}  // namespace

std::vector<Finding> findClippedElements(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  const render::Rect bounds{0, 0, widget.size.width, widget.size.height};
  std::vector<Finding> findings;
  for (const auto& element : widget.elements) {
    // The container background is drawn edge to edge and under the mask by design.
    if (element.path.starts_with("background")) continue;
    if (const double past = overhang(element.frame, bounds); past > thresholds.frameTolerance) {
      findings.push_back({.check = AuditCheck::clipping,
                          .severity = Severity::error,
                          .element = element.path,
                          .measured = past,
                          .limit = thresholds.frameTolerance,
                          .unit = "pt outside the widget",
                          .detail = element.isText ? element.shownText : element.type,
                          .frame = element.frame});
    }
  }
  return findings;
}

}  // namespace quillan::audit
