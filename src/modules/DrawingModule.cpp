// The drawing module: the render library's drawing functions behind one
// exported entry. The render library's symbols stay inside the module; the
// layers below it bind to the command's copies.
#include "render/DrawingFunctions.hpp"
#include "render/LayoutJson.hpp"

extern "C" __attribute__((visibility("default"))) const quillan::render::DrawingFunctions* quillanDrawingFunctions() {
  using namespace quillan::render;
  static const DrawingFunctions functions{
      .size = sizeof(DrawingFunctions),
      .buildId = QUILLAN_MODULE_BUILD_ID,
      .renderToFile = &renderToFile,
      .renderToPNGBytes = &renderToPNGBytes,
      .renderToSVG = &renderToSVG,
      .hitTest = &hitTest,
      .hitRegions = &hitRegions,
      .layoutJSON = &layoutJSON,
      .readPNG = &readPNG,
      .decodePNG = &decodePNG,
      .writePNG = &writePNG,
      .prepareFonts = &prepareFonts,
  };
  return &functions;
}
