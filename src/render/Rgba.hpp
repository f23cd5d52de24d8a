#pragma once

#include <cstdint>

namespace quillan::render {

// A resolved sRGB colour with straight (non-premultiplied) alpha, components in 0...1.
struct Rgba {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  static Rgba fromHex(std::uint32_t rgb, double alpha = 1.0) {
    return {((rgb >> 16) & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0, (rgb & 0xFF) / 255.0, alpha};
  }
  Rgba withAlpha(double a) const { return {red, green, blue, a}; }
  Rgba multipliedAlpha(double factor) const { return {red, green, blue, alpha * factor}; }
  bool operator==(const Rgba&) const = default;
};

}  // namespace quillan::render
