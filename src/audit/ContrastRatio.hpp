#pragma once

#include "render/Rgba.hpp"

namespace quillan::audit {

// WCAG 2.x relative luminance of an opaque sRGB colour: 0 for black, 1 for white.
double relativeLuminance(const render::Rgba& color);

// WCAG 2.x contrast ratio of two opaque colours, 1 (none) to 21 (black on white).
double contrastRatio(const render::Rgba& a, const render::Rgba& b);

// `over` (with its alpha) painted on the opaque `under`.
render::Rgba composited(const render::Rgba& over, const render::Rgba& under);

}  // namespace quillan::audit
