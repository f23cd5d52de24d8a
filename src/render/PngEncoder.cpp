// PNG encoding through libpng, with the compression chosen for widget pictures.
#include "render/PngEncoder.hpp"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstring>
#include <fstream>
#include <optional>
#include <string>

#include "render/Renderer.hpp"
#include "render/StraightAlpha.hpp"
#include "render/StraightRowsAhead.hpp"

namespace quillan::render {
namespace {

struct Output {
  std::vector<std::uint8_t> bytes;
  std::string error;
};

void appendToOutput(png_structp png, png_bytep data, png_size_t length) {
  auto& output = *static_cast<Output*>(png_get_io_ptr(png));
  output.bytes.insert(output.bytes.end(), data, data + length);
}

void flushNothing(png_structp) {}

void recordError(png_structp png, png_const_charp message) {
  static_cast<Output*>(png_get_error_ptr(png))->error = message;
  png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

// libpng reports errors by longjmp, so nothing here may need destroying:
// the buffers and the rows made ahead belong to the caller.
bool writeImage(png_structp png, png_infop info, const PixelRows& rows, const PngSettings& settings,
                std::uint8_t* rowBuffer, StraightRowsAhead* ahead) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_set_IHDR(png, info, static_cast<png_uint_32>(rows.width), static_cast<png_uint_32>(rows.height), 8,
               PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, settings.zlibLevel);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, settings.filters);
  png_write_info(png, info);
  for (int y = 0; y < rows.height; ++y) {
    const std::uint8_t* row = rows.data + static_cast<std::ptrdiff_t>(y) * rows.stride;
    if (ahead) {
      png_write_row(png, ahead->row(y));
    } else if (rows.premultipliedArgb) {
      toStraightRgba(row, rowBuffer, rows.width);
      png_write_row(png, rowBuffer);
    } else {
      png_write_row(png, row);
    }
  }
  png_write_end(png, info);
  return true;
}

}  // namespace

PngSettings defaultPngSettings() { return {2, PNG_FILTER_NONE}; }

std::vector<std::uint8_t> encodePNG(const PixelRows& rows, const PngSettings& settings) {
  Output output;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &output, recordError, ignoreWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!info) {
    png_destroy_write_struct(&png, nullptr);
    throw RenderError("cannot encode a PNG: out of memory");
  }
  png_set_write_fn(png, &output, appendToOutput, flushNothing);
  std::vector<std::uint8_t> rowBuffer(static_cast<std::size_t>(rows.width) * 4);
  std::optional<StraightRowsAhead> ahead;
  if (StraightRowsAhead::worthwhile(rows)) ahead.emplace(rows);
  const bool written = writeImage(png, info, rows, settings, rowBuffer.data(), ahead ? &*ahead : nullptr);
  ahead.reset();
  png_destroy_write_struct(&png, &info);
  if (!written) throw RenderError("cannot encode a PNG: " + output.error);
  return std::move(output.bytes);
}

void writeEncodedPNG(const PixelRows& rows, const std::filesystem::path& path) {
  const auto bytes = encodePNG(rows);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw RenderError("cannot write " + path.string() + ": " + std::strerror(errno));
}

}  // namespace quillan::render
