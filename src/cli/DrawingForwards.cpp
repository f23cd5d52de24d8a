// The command's side of the drawing functions: each call goes to the drawing
// module, loaded on the first call. Only the command links this file, so the
// calls its libraries make (replay's pictures, snapshot's cases) come here too;
// those libraries' tests, and the modules, call the drawing code directly.
#include "cli/ModuleLoader.hpp"
#include "render/DrawingFunctions.hpp"
#include "render/LayoutJson.hpp"

namespace quillan::render {
namespace {

const DrawingFunctions& drawing() {
  static const auto* functions = static_cast<const DrawingFunctions*>(cli::loadModuleTable(
      "quillan-drawing.so", kDrawingFunctionsSymbol, sizeof(DrawingFunctions), QUILLAN_MODULE_BUILD_ID));
  return *functions;
}

}  // namespace

void renderToFile(const views::Node& tree, const RenderContext& context, Format format,
                  const std::filesystem::path& path) {
  drawing().renderToFile(tree, context, format, path);
}

std::vector<std::uint8_t> renderToPNGBytes(const views::Node& tree, const RenderContext& context) {
  return drawing().renderToPNGBytes(tree, context);
}

std::string renderToSVG(const views::Node& tree, const RenderContext& context) {
  return drawing().renderToSVG(tree, context);
}

std::optional<std::string> hitTest(const views::Node& tree, const RenderContext& context, Point point) {
  return drawing().hitTest(tree, context, point);
}

std::vector<HitRegion> hitRegions(const views::Node& tree, const RenderContext& context) {
  return drawing().hitRegions(tree, context);
}

std::string layoutJSON(const views::Node& tree, const RenderContext& context) {
  return drawing().layoutJSON(tree, context);
}

PixelImage readPNG(const std::filesystem::path& path) { return drawing().readPNG(path); }

PixelImage decodePNG(const std::vector<std::uint8_t>& bytes) { return drawing().decodePNG(bytes); }

void writePNG(const PixelImage& image, const std::filesystem::path& path) { drawing().writePNG(image, path); }

void prepareFonts() { drawing().prepareFonts(); }

}  // namespace quillan::render
