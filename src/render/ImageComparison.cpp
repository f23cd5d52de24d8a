#include "render/ImageComparison.hpp"

#include <algorithm>

#include "render/PerceptualColorDistance.hpp"

namespace quillan::render {
namespace {

constexpr int kGap = 8;
constexpr PixelImage::Pixel kBackdrop{200, 200, 204, 255};
constexpr PixelImage::Pixel kMismatch{255, 0, 255, 255};

void paste(PixelImage& onto, const PixelImage& image, int left) {
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const auto& pixel = image.at(x, y);
      auto& target = onto.at(left + x, y);
      const int alpha = pixel.alpha;
      const auto mix = [alpha](int top, int bottom) {
        return static_cast<std::uint8_t>((top * alpha + bottom * (255 - alpha)) / 255);
      };
      target = {mix(pixel.red, target.red), mix(pixel.green, target.green), mix(pixel.blue, target.blue), 255};
    }
  }
}

PixelImage faded(const PixelImage& image) {
  PixelImage out = image;
  for (auto& pixel : out.pixels) pixel.alpha = static_cast<std::uint8_t>(pixel.alpha / 4);
  return out;
}

}  // namespace

double ImageComparison::matchingShare() const {
  if (pixelCount == 0) return sameSize ? 1.0 : 0.0;
  return static_cast<double>(matchingCount) / static_cast<double>(pixelCount);
}

bool ImageComparison::passes(double precision) const { return sameSize && matchingShare() >= precision; }

ImageComparison compareImages(const PixelImage& reference, const PixelImage& candidate, double perceptualPrecision) {
  ImageComparison comparison;
  comparison.pixelCount = reference.pixels.size();
  comparison.sameSize = reference.width == candidate.width && reference.height == candidate.height;
  if (!comparison.sameSize) return comparison;
  const double tolerance = std::max(0.0, (1 - perceptualPrecision) * 100);
  comparison.mismatched.resize(comparison.pixelCount);
  for (std::size_t i = 0; i < comparison.pixelCount; ++i) {
    const bool match = perceptualDistance(reference.pixels[i], candidate.pixels[i]) <= tolerance;
    comparison.mismatched[i] = !match;
    if (match) ++comparison.matchingCount;
  }
  return comparison;
}

PixelImage differenceImage(const PixelImage& reference, const PixelImage& candidate,
                           const ImageComparison& comparison) {
  const int width = std::max(reference.width, candidate.width);
  const int height = std::max(reference.height, candidate.height);
  PixelImage sheet(3 * width + 2 * kGap, height, kBackdrop);
  paste(sheet, reference, 0);
  paste(sheet, candidate, width + kGap);
  const int left = 2 * (width + kGap);
  paste(sheet, faded(reference), left);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool inReference = x < reference.width && y < reference.height;
      const bool differs = !comparison.sameSize ||
                           (inReference && comparison.mismatched[static_cast<std::size_t>(y) * reference.width + x]);
      if (differs) sheet.at(left + x, y) = kMismatch;
    }
  }
  return sheet;
}

}  // namespace quillan::render
