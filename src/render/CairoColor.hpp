#pragma once

#include <cairo.h>

#include "render/Rgba.hpp"

namespace quillan::render {

inline void setSourceColor(cairo_t* cr, Rgba color) {
  cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
}

}  // namespace quillan::render
