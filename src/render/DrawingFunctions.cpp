#include "render/DrawingFunctions.hpp"

#include "render/LayoutJson.hpp"

namespace quillan::render {

const DrawingFunctions& drawingFunctions() {
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
      .reviewWidget = &reviewWidget,
  };
  return functions;
}

}  // namespace quillan::render
