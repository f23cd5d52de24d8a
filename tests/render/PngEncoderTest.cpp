#include <cairo.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "render/PixelImage.hpp"
#include "render/PngEncoder.hpp"
#include "render/Renderer.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::render {
namespace {

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned int length) {
  auto* bytes = static_cast<std::vector<std::uint8_t>*>(closure);
  bytes->insert(bytes->end(), data, data + length);
  return CAIRO_STATUS_SUCCESS;
}

// Every colour at every opacity Cairo can hold, in a gradient: what soft edges
// and tinted symbols leave in a widget's picture; above it, opaque colours.
cairo_surface_t* translucentGradient(int width = 256, int height = 64) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t* cr = cairo_create(surface);
  cairo_scale(cr, width / 256.0, height / 64.0);
  cairo_pattern_t* colours = cairo_pattern_create_linear(0, 0, 256, 0);
  cairo_pattern_add_color_stop_rgba(colours, 0, 1, 0.58, 0, 0);
  cairo_pattern_add_color_stop_rgba(colours, 0.5, 0.2, 0.4, 0.9, 0.5);
  cairo_pattern_add_color_stop_rgba(colours, 1, 0.1, 0.1, 0.1, 1);
  cairo_set_source(cr, colours);
  cairo_arc(cr, 128, 32, 60, 0, 6.3);
  cairo_fill(cr);
  cairo_pattern_t* opaque = cairo_pattern_create_linear(0, 0, 256, 0);
  cairo_pattern_add_color_stop_rgb(opaque, 0, 1, 0.58, 0);
  cairo_pattern_add_color_stop_rgb(opaque, 1, 0.2, 0.4, 0.9);
  cairo_set_source(cr, opaque);
  cairo_rectangle(cr, 0, 0, 256, 4);
  cairo_fill(cr);
  cairo_pattern_destroy(opaque);
  cairo_pattern_destroy(colours);
  cairo_destroy(cr);
  cairo_surface_flush(surface);
  return surface;
}

// Premultiplied pixels of every opacity at random, each of which must be
// un-premultiplied and rounded as Cairo's writer does, wherever its row is made.
cairo_surface_t* noise(int width, int height) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  std::uint32_t state = 7;
  const auto next = [&state] { return (state = state * 1664525 + 1013904223) >> 24; };
  auto* data = cairo_image_surface_get_data(surface);
  for (int y = 0; y < height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) *
                                                            cairo_image_surface_get_stride(surface));
    for (int x = 0; x < width; ++x) {
      const std::uint32_t alpha = next();
      const auto channel = [&] { return alpha == 0 ? 0 : next() % (alpha + 1); };
      row[x] = alpha << 24 | channel() << 16 | channel() << 8 | channel();
    }
  }
  cairo_surface_mark_dirty(surface);
  return surface;
}

TEST(PngEncoder, StoresThePixelsCairosOwnWriterStores) {
  const struct {
    const char* name;
    cairo_surface_t* surface;
  } cases[] = {
      {"a small picture, made row by row", translucentGradient()},
      // Large enough for the rows to be made ahead on a second thread; the
      // slots are filled many times over and the last batch is short.
      {"rows made ahead", translucentGradient(600, 221)},
      {"a medium widget of noise at @3x", noise(1092, 510)},
  };
  for (const auto& [name, surface] : cases) {
    SCOPED_TRACE(name);
    std::vector<std::uint8_t> cairos;
    ASSERT_EQ(cairo_surface_write_to_png_stream(surface, appendBytes, &cairos), CAIRO_STATUS_SUCCESS);
    const PixelRows rows{cairo_image_surface_get_data(surface), cairo_image_surface_get_width(surface),
                         cairo_image_surface_get_height(surface), cairo_image_surface_get_stride(surface), true};
    EXPECT_EQ(decodePNG(encodePNG(rows)).pixels, decodePNG(cairos).pixels);
    cairo_surface_destroy(surface);
  }
}

TEST(PngEncoder, WritesStraightRowsAsTheyAre) {
  cairo_surface_t* surface = translucentGradient();
  std::vector<std::uint8_t> cairos;
  ASSERT_EQ(cairo_surface_write_to_png_stream(surface, appendBytes, &cairos), CAIRO_STATUS_SUCCESS);
  const auto expected = decodePNG(cairos);

  testing::TemporaryFolder folder;
  writePNG(expected, folder.path() / "straight.png");
  EXPECT_EQ(readPNG(folder.path() / "straight.png").pixels, expected.pixels);
  EXPECT_THROW(writePNG(expected, folder.path() / "missing" / "straight.png"), RenderError);
  cairo_surface_destroy(surface);
}

}  // namespace
}  // namespace quillan::render
