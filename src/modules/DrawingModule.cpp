// The drawing module: the render library's drawing functions behind one
// exported entry. The render library stays inside the module; the layers
// below it bind to the command's copies.
#include "render/DrawingFunctions.hpp"

extern "C" __attribute__((visibility("default"))) const quillan::render::DrawingFunctions* quillanDrawingFunctions() {
  return &quillan::render::drawingFunctions();
}
