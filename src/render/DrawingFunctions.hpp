#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "render/Geometry.hpp"
#include "render/HitTest.hpp"
#include "render/PixelImage.hpp"
#include "render/RenderContext.hpp"
#include "render/Renderer.hpp"
#include "render/WidgetReview.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// Everything of this library that needs the drawing stack (Pango, Cairo,
// fontconfig and the fonts), as one table, and the only way the code linked
// into the command reaches it: the command keeps that stack in a module it
// loads only when a command draws, lays out or hit-tests, so that `list`,
// `timeline` and the JSON of a view tree never pay for loading it. Whatever
// draws there (the snapshot suite, the replay's painter, the commands) is
// given a table: the command passes the module's (cli/ModuleLoader), tests
// pass this library's own, drawingFunctions(), which is also what the
// module's entry returns. Code linked into the modules themselves (the
// server) calls the functions directly.
struct DrawingFunctions {
  // The module and the command must come from the same build: both check the
  // table's size and the build's identity before any call.
  std::size_t size;
  const char* buildId;
  void (*renderToFile)(const views::Node&, const RenderContext&, Format, const std::filesystem::path&);
  std::vector<std::uint8_t> (*renderToPNGBytes)(const views::Node&, const RenderContext&);
  std::string (*renderToSVG)(const views::Node&, const RenderContext&);
  std::optional<std::string> (*hitTest)(const views::Node&, const RenderContext&, Point);
  std::vector<HitRegion> (*hitRegions)(const views::Node&, const RenderContext&);
  std::string (*layoutJSON)(const views::Node&, const RenderContext&);
  PixelImage (*readPNG)(const std::filesystem::path&);
  PixelImage (*decodePNG)(const std::vector<std::uint8_t>&);
  void (*writePNG)(const PixelImage&, const std::filesystem::path&);
  void (*prepareFonts)();
  WidgetReview (*reviewWidget)(const views::Node&, const RenderContext&, bool withPicture);
};

// The module's one exported function: `const DrawingFunctions* quillanDrawingFunctions()`.
inline constexpr const char* kDrawingFunctionsSymbol = "quillanDrawingFunctions";

// This library's own functions. Only what links the drawing stack anyway may
// call it: naming it from the command would link the stack into the command.
const DrawingFunctions& drawingFunctions();

}  // namespace quillan::render
