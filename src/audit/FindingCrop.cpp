#include "audit/FindingCrop.hpp"

#include <algorithm>
#include <cmath>

namespace quillan::audit {

namespace {

constexpr double kCropMarginPoints = 24;
constexpr render::PixelImage::Pixel kOutline{230, 0, 60, 255};

void outline(render::PixelImage& image, int left, int top, int right, int bottom) {
  const auto plot = [&](int x, int y) {
    if (x >= 0 && y >= 0 && x < image.width && y < image.height) image.at(x, y) = kOutline;
  };
  for (int x = left; x <= right; ++x) plot(x, top), plot(x, bottom);
  for (int y = top; y <= bottom; ++y) plot(left, y), plot(right, y);
}

}  // namespace

render::PixelImage findingCrop(const render::PixelImage& picture, double scale, const render::Rect& frame) {
  const auto pixel = [scale](double points) { return static_cast<int>(std::floor(points * scale)); };
  const int left = std::clamp(pixel(frame.x - kCropMarginPoints), 0, picture.width - 1);
  const int top = std::clamp(pixel(frame.y - kCropMarginPoints), 0, picture.height - 1);
  const int right = std::clamp(pixel(frame.maxX() + kCropMarginPoints), left + 1, picture.width);
  const int bottom = std::clamp(pixel(frame.maxY() + kCropMarginPoints), top + 1, picture.height);
  render::PixelImage crop(right - left, bottom - top);
  for (int y = top; y < bottom; ++y)
    for (int x = left; x < right; ++x) crop.at(x - left, y - top) = picture.at(x, y);
  outline(crop, pixel(frame.x) - left - 1, pixel(frame.y) - top - 1, pixel(frame.maxX()) - left,
          pixel(frame.maxY()) - top);
  return crop;
}

}  // namespace quillan::audit
