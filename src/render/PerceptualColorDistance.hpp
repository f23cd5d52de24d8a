#pragma once

#include "render/PixelImage.hpp"

namespace quillan::render {

// CIELAB under the D65 white point: L from 0 (black) to 100 (white).
struct LabColor {
  double lightness = 0;
  double a = 0;
  double b = 0;
};

LabColor labFromSRGB(double red, double green, double blue);

// How far apart two pixels look, as CIE76 ΔE (the Euclidean distance in
// CIELAB): about 1 is the smallest difference an eye notices side by side,
// 100 is black against white. Transparency counts: each pixel is judged laid
// over white and over black, and the larger distance wins, so a change of
// alpha alone is seen too.
double perceptualDistance(const PixelImage::Pixel& first, const PixelImage::Pixel& second);

}  // namespace quillan::render
