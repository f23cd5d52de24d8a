#include "audit/ContrastRatio.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::audit {

namespace {

double linearChannel(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

}  // namespace

double relativeLuminance(const render::Rgba& color) {
  return 0.2126 * linearChannel(color.red) + 0.7152 * linearChannel(color.green) + 0.0722 * linearChannel(color.blue);
}

double contrastRatio(const render::Rgba& a, const render::Rgba& b) {
  const double first = relativeLuminance(a);
  const double second = relativeLuminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

render::Rgba composited(const render::Rgba& over, const render::Rgba& under) {
  const double alpha = std::clamp(over.alpha, 0.0, 1.0);
  const auto mix = [alpha](double top, double bottom) { return top * alpha + bottom * (1 - alpha); };
  return {mix(over.red, under.red), mix(over.green, under.green), mix(over.blue, under.blue), 1};
}

}  // namespace quillan::audit
