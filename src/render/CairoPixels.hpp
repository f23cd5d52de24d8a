#pragma once

#include <cairo.h>

#include "render/PixelImage.hpp"

namespace quillan::render {

// The straight RGBA pixels of an ARGB32 image surface. Cairo keeps colour
// premultiplied by alpha; comparisons, checks and PNG readers want it straight,
// rounded as Cairo's own PNG writer rounds.
PixelImage straightPixelsOf(cairo_surface_t* argb32);

}  // namespace quillan::render
