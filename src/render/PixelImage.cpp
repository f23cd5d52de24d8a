#include "render/PixelImage.hpp"

namespace quillan::render {

PixelImage::PixelImage(int width, int height) : PixelImage(width, height, Pixel{}) {}

PixelImage::PixelImage(int width, int height, Pixel fill)
    : width(width), height(height), pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fill) {}

}  // namespace quillan::render
