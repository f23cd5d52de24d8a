#include "render/StraightAlpha.hpp"

#include <cstring>

namespace quillan::render {

void toStraightRgba(const std::uint8_t* source, std::uint8_t* target, int width) {
  for (int x = 0; x < width; ++x, source += 4, target += 4) {
    std::uint32_t word;
    std::memcpy(&word, source, sizeof word);
    const std::uint32_t alpha = word >> 24;
    if (alpha == 0) {
      std::memset(target, 0, 4);
      continue;
    }
    // Most of a widget is opaque, where the rounding below gives c back.
    if (alpha == 255) {
      target[0] = static_cast<std::uint8_t>(word >> 16);
      target[1] = static_cast<std::uint8_t>(word >> 8);
      target[2] = static_cast<std::uint8_t>(word);
      target[3] = 255;
      continue;
    }
    target[0] = static_cast<std::uint8_t>(((word >> 16 & 0xFF) * 255 + alpha / 2) / alpha);
    target[1] = static_cast<std::uint8_t>(((word >> 8 & 0xFF) * 255 + alpha / 2) / alpha);
    target[2] = static_cast<std::uint8_t>(((word & 0xFF) * 255 + alpha / 2) / alpha);
    target[3] = static_cast<std::uint8_t>(alpha);
  }
}

}  // namespace quillan::render
