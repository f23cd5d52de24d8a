#pragma once

#include <cstddef>
#include <vector>

#include "render/PixelImage.hpp"

namespace quillan::render {

// How a new picture compares with its reference, pixel by pixel.
struct ImageComparison {
  bool sameSize = false;
  std::size_t pixelCount = 0;     // of the reference
  std::size_t matchingCount = 0;  // 0 when the sizes differ
  std::vector<bool> mismatched;   // per reference pixel, row by row (empty when the sizes differ)

  // The share of pixels that match, 0...1.
  double matchingShare() const;
  // Whether at least `precision` (0...1) of the pixels match.
  bool passes(double precision) const;
};

// Compares two pictures. A pixel matches when its perceptual distance to the
// reference's is at most (1 - perceptualPrecision) * 100 ΔE: 1.0 asks for the
// same colour, 0.98 allows a difference of 2 ΔE, about what an eye can just
// tell side by side. Pictures of different sizes match nowhere.
ImageComparison compareImages(const PixelImage& reference, const PixelImage& candidate, double perceptualPrecision);

// The reference, the new picture and their difference side by side, on a
// neutral grey: the difference is the reference faded, with every pixel that
// does not match in solid magenta (all of it when the sizes differ).
PixelImage differenceImage(const PixelImage& reference, const PixelImage& candidate, const ImageComparison& comparison);

}  // namespace quillan::render
