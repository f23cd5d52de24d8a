// PNG files and bytes to and from PixelImage: read through Cairo, written by our encoder.
#include <cairo.h>

#include <algorithm>
#include <memory>
#include <string>

#include "render/CairoHandles.hpp"
#include "render/PixelImage.hpp"
#include "render/PngEncoder.hpp"
#include "render/Renderer.hpp"

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

const std::uint32_t* row(cairo_surface_t* surface, int y) {
  const auto* data = cairo_image_surface_get_data(surface);
  return reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) *
                                                           cairo_image_surface_get_stride(surface));
}

// Reads a loaded PNG; `source` names it in errors.
PixelImage imageOf(cairo_surface_t* surface, const std::string& source) {
  if (const auto status = cairo_surface_status(surface); status != CAIRO_STATUS_SUCCESS) {
    throw RenderError("cannot read " + source + ": " + cairo_status_to_string(status));
  }
  cairo_surface_flush(surface);
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  if (width > kMaxPixelImageSide || height > kMaxPixelImageSide) {
    throw RenderError("cannot read " + source + ": larger than " + std::to_string(kMaxPixelImageSide) +
                      " pixels on a side");
  }
  // PNGs without alpha load as RGB24; painting them onto ARGB32 gives one layout to read.
  CairoSurface argb(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  cairo_t* cr = cairo_create(argb.get());
  cairo_set_source_surface(cr, surface, 0, 0);
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  cairo_paint(cr);
  cairo_destroy(cr);
  cairo_surface_flush(argb.get());
  PixelImage image(width, height);
  for (int y = 0; y < height; ++y) {
    const auto* words = row(argb.get(), y);
    for (int x = 0; x < width; ++x) image.at(x, y) = unpremultiplied(words[x]);
  }
  return image;
}

struct ByteReader {
  const std::vector<std::uint8_t>& bytes;
  std::size_t position = 0;
};

cairo_status_t readBytes(void* closure, unsigned char* data, unsigned int length) {
  auto& reader = *static_cast<ByteReader*>(closure);
  if (reader.bytes.size() - reader.position < length) return CAIRO_STATUS_READ_ERROR;
  std::copy_n(reader.bytes.begin() + static_cast<std::ptrdiff_t>(reader.position), length, data);
  reader.position += length;
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

PixelImage readPNG(const std::filesystem::path& path) {
  CairoSurface surface(cairo_image_surface_create_from_png(path.c_str()));
  return imageOf(surface.get(), path.string());
}

PixelImage decodePNG(const std::vector<std::uint8_t>& bytes) {
  ByteReader reader{bytes};
  CairoSurface surface(cairo_image_surface_create_from_png_stream(readBytes, &reader));
  return imageOf(surface.get(), "a PNG in memory");
}

void writePNG(const PixelImage& image, const std::filesystem::path& path) {
  static_assert(sizeof(PixelImage::Pixel) == 4, "pixels are stored as RGBA bytes");
  writeEncodedPNG({reinterpret_cast<const std::uint8_t*>(image.pixels.data()), image.width, image.height,
                   image.width * 4, false},
                  path);
}

}  // namespace quillan::render
