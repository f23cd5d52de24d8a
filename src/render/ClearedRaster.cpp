#include "render/ClearedRaster.hpp"

#include <sys/mman.h>

namespace quillan::render {
namespace {

const cairo_user_data_key_t kPixelsKey{};

struct Mapping {
  void* address;
  std::size_t bytes;
};

void unmap(void* data) {
  const auto* mapping = static_cast<Mapping*>(data);
  munmap(mapping->address, mapping->bytes);
  delete mapping;
}

}  // namespace

ClearedRaster::ClearedRaster(int width, int height)
    : width_(width),
      height_(height),
      bytes_(width > 0 && height > 0
                 ? static_cast<std::size_t>(cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width)) *
                       static_cast<std::size_t>(height)
                 : 0) {
  if (bytes_ == 0) return;
  // A fresh anonymous mapping is zero, that is transparent; populating it
  // makes the kernel clear every page now, in one call.
  clearing_ = std::thread([this] {
    void* mapped = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    pixels_ = mapped == MAP_FAILED ? nullptr : mapped;
  });
}

ClearedRaster::~ClearedRaster() {
  if (clearing_.joinable()) clearing_.join();
  if (pixels_) munmap(pixels_, bytes_);
}

CairoSurface ClearedRaster::surface() {
  if (clearing_.joinable()) clearing_.join();
  if (!pixels_) return CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_, height_));
  CairoSurface surface(cairo_image_surface_create_for_data(static_cast<unsigned char*>(pixels_), CAIRO_FORMAT_ARGB32,
                                                           width_, height_,
                                                           cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width_)));
  auto* mapping = new Mapping{pixels_, bytes_};
  if (cairo_surface_set_user_data(surface.get(), &kPixelsKey, mapping, unmap) != CAIRO_STATUS_SUCCESS) {
    delete mapping;
    return CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_, height_));
  }
  pixels_ = nullptr;
  return surface;
}

}  // namespace quillan::render
