// PNG files and bytes to and from PixelImage: read through Cairo, written by our encoder.
#include <cairo.h>

#include <algorithm>
#include <memory>
#include <string>

#include "render/CairoHandles.hpp"
#include "render/CairoPixels.hpp"
#include "render/PixelImage.hpp"
#include "render/PngEncoder.hpp"
#include "render/Renderer.hpp"

namespace quillan::render {
namespace {

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
  return straightPixelsOf(argb.get());
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
