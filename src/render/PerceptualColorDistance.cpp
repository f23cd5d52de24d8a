#include "render/PerceptualColorDistance.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::render {
namespace {

double linearFromSRGB(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double labCurve(double t) {
  constexpr double kEpsilon = 216.0 / 24389.0;
  constexpr double kKappa = 24389.0 / 27.0;
  return t > kEpsilon ? std::cbrt(t) : (kKappa * t + 16) / 116;
}

double distance(const LabColor& first, const LabColor& second) {
  return std::hypot(first.lightness - second.lightness, first.a - second.a, first.b - second.b);
}

// The pixel laid over an opaque backdrop of grey level `backdrop` (0 or 1).
LabColor over(const PixelImage::Pixel& pixel, double backdrop) {
  const double alpha = pixel.alpha / 255.0;
  const auto mix = [&](std::uint8_t channel) { return channel / 255.0 * alpha + backdrop * (1 - alpha); };
  return labFromSRGB(mix(pixel.red), mix(pixel.green), mix(pixel.blue));
}

}  // namespace

LabColor labFromSRGB(double red, double green, double blue) {
  const double r = linearFromSRGB(red), g = linearFromSRGB(green), b = linearFromSRGB(blue);
  // sRGB to XYZ, relative to the D65 white.
  const double x = (0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047;
  const double y = 0.2126729 * r + 0.7151522 * g + 0.0721750 * b;
  const double z = (0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883;
  const double fx = labCurve(x), fy = labCurve(y), fz = labCurve(z);
  return {116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz)};
}

double perceptualDistance(const PixelImage::Pixel& first, const PixelImage::Pixel& second) {
  if (first == second) return 0;
  return std::max(distance(over(first, 1), over(second, 1)), distance(over(first, 0), over(second, 0)));
}

}  // namespace quillan::render
