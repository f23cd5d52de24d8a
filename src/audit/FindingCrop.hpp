#pragma once

#include "render/Geometry.hpp"
#include "render/PixelImage.hpp"

namespace quillan::audit {

// The part of a widget's picture (drawn at `scale` pixels per point) around
// `frame`, a margin of context on every side, with the frame outlined in red
// so that the element a finding names stands out.
render::PixelImage findingCrop(const render::PixelImage& picture, double scale, const render::Rect& frame);

}  // namespace quillan::audit
