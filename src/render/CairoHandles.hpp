#pragma once

#include <cairo.h>

#include <memory>

namespace quillan::render {

struct CairoSurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct CairoContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

// Cairo objects owned by the code that made them, released on every way out.
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoSurfaceDeleter>;
using CairoContext = std::unique_ptr<cairo_t, CairoContextDeleter>;

}  // namespace quillan::render
