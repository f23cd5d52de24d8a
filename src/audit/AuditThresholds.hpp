#pragma once

#include <cstddef>

namespace quillan::audit {

// Where each check draws its line. The defaults are the ones the platform's
// own guidelines state (44-point tap targets, WCAG 2.x contrast).
struct AuditThresholds {
  // A truncated text showing fewer graphemes than this (ellipsis not counted)
  // no longer says what it is: "M…" for a weekday, "On…" for a title.
  std::size_t minimumShownGraphemes = 3;
  double minimumTapSide = 44;
  double minimumContrast = 4.5;
  double minimumLargeTextContrast = 3;
  // Frames are snapped to the pixel grid; less than this past an edge is rounding.
  double frameTolerance = 0.5;
};

}  // namespace quillan::audit
