#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace quillan::render {

// How hard zlib works and which row filters libpng may choose from. Widgets
// are flat colour, soft edges and text, where row filters only blur the runs
// zlib finds: unfiltered rows at level 2 encode about five times faster than
// libpng's defaults (level 6, adaptive filters) for 12% more bytes
// (bench_render_png's BM_EncodeMediumPNG measures every choice).
struct PngSettings {
  int zlibLevel;
  int filters;  // PNG_FILTER_* flags
};
PngSettings defaultPngSettings();

// Rows of 32-bit pixels as Cairo keeps them: native-endian ARGB with the
// colour premultiplied by alpha (`premultiplied`), or straight RGBA bytes.
struct PixelRows {
  const std::uint8_t* data;
  int width;
  int height;
  int stride;  // bytes from one row to the next
  bool premultipliedArgb;
};

// An 8-bit RGBA PNG of the rows, with straight alpha: the same pixels Cairo's
// own writer stores. Throws RenderError if libpng refuses.
std::vector<std::uint8_t> encodePNG(const PixelRows& rows, const PngSettings& settings = defaultPngSettings());

// Writes the encoded rows to `path`; throws RenderError naming it.
void writeEncodedPNG(const PixelRows& rows, const std::filesystem::path& path);

}  // namespace quillan::render
