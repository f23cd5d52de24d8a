#include "render/CairoPixels.hpp"

#include <cstddef>
#include <cstdint>

namespace quillan::render {
namespace {

// Cairo keeps premultiplied native-endian ARGB in 32-bit words.
PixelImage::Pixel unpremultiplied(std::uint32_t word) {
  const auto alpha = static_cast<std::uint8_t>(word >> 24);
  if (alpha == 0) return {};
  const auto channel = [alpha](std::uint32_t value) {
    return static_cast<std::uint8_t>((value * 255 + alpha / 2) / alpha);
  };
  return {channel(word >> 16 & 0xFF), channel(word >> 8 & 0xFF), channel(word & 0xFF), alpha};
}

}  // namespace

PixelImage straightPixelsOf(cairo_surface_t* argb32) {
  cairo_surface_flush(argb32);
  const int width = cairo_image_surface_get_width(argb32);
  const int height = cairo_image_surface_get_height(argb32);
  const auto* data = cairo_image_surface_get_data(argb32);
  const auto stride = static_cast<std::ptrdiff_t>(cairo_image_surface_get_stride(argb32));
  PixelImage image(width, height);
  for (int y = 0; y < height; ++y) {
    const auto* words = reinterpret_cast<const std::uint32_t*>(data + y * stride);
    for (int x = 0; x < width; ++x) image.at(x, y) = unpremultiplied(words[x]);
  }
  return image;
}

}  // namespace quillan::render
