#include <cairo.h>
#include <gtest/gtest.h>

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
cairo_surface_t* translucentGradient() {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 256, 64);
  cairo_t* cr = cairo_create(surface);
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

TEST(PngEncoder, StoresThePixelsCairosOwnWriterStores) {
  cairo_surface_t* surface = translucentGradient();
  std::vector<std::uint8_t> cairos;
  ASSERT_EQ(cairo_surface_write_to_png_stream(surface, appendBytes, &cairos), CAIRO_STATUS_SUCCESS);
  const PixelRows rows{cairo_image_surface_get_data(surface), 256, 64, cairo_image_surface_get_stride(surface), true};
  const auto ours = encodePNG(rows);
  const auto expected = decodePNG(cairos);
  EXPECT_EQ(decodePNG(ours).pixels, expected.pixels);

  // Straight rows (difference images) go out as they are.
  testing::TemporaryFolder folder;
  writePNG(expected, folder.path() / "straight.png");
  EXPECT_EQ(readPNG(folder.path() / "straight.png").pixels, expected.pixels);
  EXPECT_THROW(writePNG(expected, folder.path() / "missing" / "straight.png"), RenderError);
  cairo_surface_destroy(surface);
}

}  // namespace
}  // namespace quillan::render
