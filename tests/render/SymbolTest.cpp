#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "render/Layout.hpp"
#include "render/RenderingConstants.hpp"
#include "render/SymbolDrawing.hpp"

namespace quillan::render {
namespace {

constexpr int kSide = 200;

struct Canvas {
  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface{
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kSide, kSide), &cairo_surface_destroy};

  Canvas(std::string_view name, FontWeight weight) {
    cairo_t* cr = cairo_create(surface.get());
    drawSymbol(cr, name, {0, 0, kSide, kSide}, weight, {0, 0, 0, 1}, {0, 0, 0, 1});
    cairo_destroy(cr);
    cairo_surface_flush(surface.get());
  }

  int alphaAt(double x, double y) const {
    const unsigned char* data = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    return data[static_cast<int>(y) * stride + static_cast<int>(x) * 4 + 3];
  }

  int inkedPixels() const {
    int inked = 0;
    for (int y = 0; y < kSide; ++y)
      for (int x = 0; x < kSide; ++x) inked += alphaAt(x, y) > 127;
    return inked;
  }
};

TEST(Symbol, HeavierWeightsDrawThickerStrokes) {
  for (const char* name : {"checkmark", "square.and.pencil"}) {
    int previous = 0;
    for (FontWeight weight :
         {FontWeight::ultraLight, FontWeight::light, FontWeight::regular, FontWeight::bold, FontWeight::black}) {
      const int inked = Canvas(name, weight).inkedPixels();
      EXPECT_GT(inked, previous) << name << " at weight " << weightClass(weight);
      previous = inked;
    }
    EXPECT_GT(Canvas(name, FontWeight::black).inkedPixels(), 3 * Canvas(name, FontWeight::ultraLight).inkedPixels())
        << name;
  }
}

TEST(Symbol, ThePencilEndsInAPoint) {
  const Canvas canvas("square.and.pencil", FontWeight::regular);
  // The tip sits at (0.42, 0.58) of the box and the bar runs up and to the
  // right at 45 degrees. A round end would fill the tip's sides; a point
  // leaves them empty while the bar further up is solid across.
  const double tipX = 0.42 * kSide, tipY = 0.58 * kSide;
  const double sideways = 0.05 * kSide / std::sqrt(2.0);
  EXPECT_EQ(canvas.alphaAt(tipX - sideways, tipY - sideways), 0);
  EXPECT_EQ(canvas.alphaAt(tipX + sideways, tipY + sideways), 0);
  const double up = 0.25 * kSide / std::sqrt(2.0);
  EXPECT_EQ(canvas.alphaAt(tipX + up - sideways, tipY - up - sideways), 255);
  EXPECT_EQ(canvas.alphaAt(tipX + up + sideways, tipY - up + sideways), 255);
}

TEST(Symbol, ImageScalesResizeTheGlyphOnly) {
  LayoutNode node;
  node.kind = LayoutKind::symbol;
  node.symbolName = "checkmark";
  node.symbolFont.size = 20;
  const Size medium = symbolSize(node);
  node.symbolScale = SymbolScale::small;
  const Size small = symbolSize(node);
  node.symbolScale = SymbolScale::large;
  const Size large = symbolSize(node);
  EXPECT_NEAR(small.height / medium.height, constants::kSymbolSmallScale, 1e-12);
  EXPECT_NEAR(large.height / medium.height, constants::kSymbolLargeScale, 1e-12);
  EXPECT_NEAR(large.width / large.height, medium.width / medium.height, 1e-12);
}

}  // namespace
}  // namespace quillan::render
