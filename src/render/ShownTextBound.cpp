#include "render/ShownTextBound.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::render {

namespace {

// Lines are counted with this slack so that a height of exactly n lines holds
// n despite floating-point noise.
constexpr double kLineFitTolerance = 1e-9;
// Fonts below a point (which the view tree never carries) count as one point,
// so that the bound stays finite.
constexpr double kSmallestCountedFontSize = 1;

std::size_t wholeLines(double height, double lineHeight) {
  const double lines = std::floor(height / lineHeight + kLineFitTolerance);
  return lines < 1 ? 1 : static_cast<std::size_t>(lines);
}

std::size_t shownLines(const TextLimits& limits, double lineHeight) {
  const double pitch = std::max(lineHeight, kSmallestCountedFontSize);
  std::size_t lines = static_cast<std::size_t>(std::ceil(kLargestWidgetHeight / pitch));
  if (limits.lineLimit && *limits.lineLimit > 0) lines = std::min(lines, static_cast<std::size_t>(*limits.lineLimit));
  if (limits.height && lineHeight > 0) lines = std::min(lines, wholeLines(*limits.height, lineHeight));
  return std::max<std::size_t>(1, lines);
}

std::size_t lineCodePoints(const TextLimits& limits, double smallestFontSize) {
  const double width = std::max(0.0, limits.width.value_or(kLargestWidgetWidth));
  const double narrowest = kMinAdvancePerPoint * std::max(smallestFontSize, kSmallestCountedFontSize);
  const double characters = std::min(std::ceil(width / narrowest), static_cast<double>(kMaxLaidOutCodePoints));
  return static_cast<std::size_t>(characters) + 1;
}

}  // namespace

ShownTextBound shownTextBound(const TextLimits& limits, double lineHeight, double smallestFontSize) {
  ShownTextBound bound;
  bound.lines = shownLines(limits, lineHeight);
  bound.lineCodePoints = lineCodePoints(limits, smallestFontSize);
  bound.codePoints = std::min(kMaxLaidOutCodePoints, (bound.lines + 1) * bound.lineCodePoints);
  return bound;
}

}  // namespace quillan::render
