#pragma once

#include <cstdint>

namespace quillan::render {

// One row of Cairo's pixels (native-endian ARGB, colour premultiplied by
// alpha) as the straight RGBA bytes a PNG stores, rounded as Cairo's own
// writer rounds them.
void toStraightRgba(const std::uint8_t* source, std::uint8_t* target, int width);

}  // namespace quillan::render
