#pragma once

#include <cstdint>
#include <vector>

#include "render/PngEncoder.hpp"

namespace quillan::render {

// The very bytes encodePNG writes with the default settings, in little more
// than the time zlib takes to compress the picture: a second thread turns
// Cairo's rows into the PNG's (straight alpha, each row after its filter byte)
// and sums them for zlib's checksum while this one compresses the rows before.
// Straight rows, and pictures so small that libpng narrows zlib's window for
// them, are left to encodePNG. Throws RenderError if zlib refuses.
std::vector<std::uint8_t> encodePNGPipelined(const PixelRows& rows);

}  // namespace quillan::render
