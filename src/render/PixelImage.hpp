#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "render/Rgba.hpp"

namespace quillan::render {

// A picture as rows of pixels with straight alpha, 8 bits a channel: what
// snapshot comparison reads from PNG files and writes difference images as.
struct PixelImage {
  struct Pixel {
    std::uint8_t red = 0, green = 0, blue = 0, alpha = 0;
    bool operator==(const Pixel&) const = default;
  };

  int width = 0;
  int height = 0;
  std::vector<Pixel> pixels;  // row by row, width * height

  PixelImage() = default;
  PixelImage(int width, int height);  // every pixel clear
  PixelImage(int width, int height, Pixel fill);

  Pixel& at(int x, int y) { return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + x]; }
  const Pixel& at(int x, int y) const {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + x];
  }
};

// The largest picture read: a widget at @3x on the largest profile is about
// 1100 x 1150 pixels, so this refuses only files that are no widget pictures.
inline constexpr int kMaxPixelImageSide = 8192;

// Throw RenderError naming the file when it is missing, not a PNG or larger
// than kMaxPixelImageSide on a side.
PixelImage readPNG(const std::filesystem::path& path);
PixelImage decodePNG(const std::vector<std::uint8_t>& bytes);
// Throws RenderError naming the file when it cannot be written.
void writePNG(const PixelImage& image, const std::filesystem::path& path);

}  // namespace quillan::render
