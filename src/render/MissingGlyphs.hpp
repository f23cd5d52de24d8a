#pragma once

#include <cstddef>

typedef struct _PangoLayout PangoLayout;

namespace quillan::render {

// The glyphs of `layout` that stand for a character no font could draw: an
// unknown glyph (a hex box), or an empty one where the character is visible.
// Spaces, controls and joiners shape to empty glyphs by design and do not count.
std::size_t missingGlyphCount(PangoLayout* layout);

}  // namespace quillan::render
