#include "render/Renderer.hpp"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <cmath>
#include <memory>

#include "render/CairoHandles.hpp"
#include "render/ClearedRaster.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/PngEncoder.hpp"
#include "render/WidgetLayout.hpp"
#include "render/WidgetPainter.hpp"

namespace quillan::render {

namespace {

void checkScale(double scale) {
  if (!(scale >= 1 && scale <= 3)) throw RenderError("scale must be between 1 and 3, got " + std::to_string(scale));
}

void paint(cairo_surface_t* surface, const WidgetLayout& widget, const RenderContext& context, double scale) {
  CairoContext cr(cairo_create(surface));
  cairo_scale(cr.get(), scale, scale);
  paintWidget(cr.get(), widget, context);
  cairo_surface_flush(surface);
}

void draw(cairo_surface_t* surface, const views::Node& tree, const RenderContext& context, double scale) {
  paint(surface, *layoutWidget(tree, context, PangoTextMeasurer::shared()), context, scale);
}

// The pixels are cleared while the widget is laid out.
CairoSurface rasterFor(const views::Node& tree, const RenderContext& context) {
  checkScale(context.scale);
  const Size size = context.device.sizeOf(context.env.family);
  ClearedRaster raster(static_cast<int>(std::ceil(size.width * context.scale)),
                       static_cast<int>(std::ceil(size.height * context.scale)));
  const auto widget = layoutWidget(tree, context, PangoTextMeasurer::shared());
  CairoSurface surface = raster.surface();
  paint(surface.get(), *widget, context, context.scale);
  return surface;
}

PixelRows rowsOf(cairo_surface_t* surface) {
  return {cairo_image_surface_get_data(surface), cairo_image_surface_get_width(surface),
          cairo_image_surface_get_height(surface), cairo_image_surface_get_stride(surface), true};
}

cairo_status_t appendText(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void checkWritten(cairo_status_t status, const std::filesystem::path& path) {
  if (status != CAIRO_STATUS_SUCCESS)
    throw RenderError("cannot write " + path.string() + ": " + cairo_status_to_string(status));
}

}  // namespace

void prepareFonts() {
  // The body size in the regular weight: the face most texts are set in. Each
  // further face costs memory whether or not the widget shows it.
  StyledRun sample;
  sample.text = "Aa";
  PangoTextMeasurer::shared().width({sample});
}

void renderToFile(const views::Node& tree, const RenderContext& context, Format format,
                  const std::filesystem::path& path) {
  const Size size = context.device.sizeOf(context.env.family);
  if (format == Format::png) {
    const CairoSurface surface = rasterFor(tree, context);
    writeEncodedPNG(rowsOf(surface.get()), path);
    return;
  }
  CairoSurface surface(format == Format::svg ? cairo_svg_surface_create(path.c_str(), size.width, size.height)
                                             : cairo_pdf_surface_create(path.c_str(), size.width, size.height));
  checkWritten(cairo_surface_status(surface.get()), path);
  draw(surface.get(), tree, context, 1.0);
  cairo_surface_finish(surface.get());
  checkWritten(cairo_surface_status(surface.get()), path);
}

std::vector<std::uint8_t> renderToPNGBytes(const views::Node& tree, const RenderContext& context) {
  const CairoSurface surface = rasterFor(tree, context);
  return encodePNG(rowsOf(surface.get()));
}

std::string renderToSVG(const views::Node& tree, const RenderContext& context) {
  const Size size = context.device.sizeOf(context.env.family);
  std::string svg;
  {
    CairoSurface surface(cairo_svg_surface_create_for_stream(appendText, &svg, size.width, size.height));
    draw(surface.get(), tree, context, 1.0);
    cairo_surface_finish(surface.get());
  }
  return svg;
}

}  // namespace quillan::render
