#pragma once

#include <cstddef>
#include <string>

#include "render/DrawingFunctions.hpp"
#include "server/ServingFunctions.hpp"

namespace quillan::cli {

// Loads one of the command's modules (shared objects built and installed with
// it) and returns what its entry function `symbol` answers. The module is
// looked for beside the command (the build tree) and then in the command's
// module folder (an installed command). `size` and `buildId` must match the
// first two fields of the table the entry returns, so a module from another
// build is refused rather than called. Throws std::runtime_error naming every
// place it looked.
const void* loadModuleTable(const std::string& fileName, const char* symbol, std::size_t size,
                            const std::string& buildId);

// The command's two modules, each loaded on its first call and kept: what the
// command draws with, and `serve` (which a build configured without the
// serving module refuses in one line).
const render::DrawingFunctions& drawingModule();
const server::ServingFunctions& servingModule();

// Loads the drawing module and the body font: what a command prepares while
// it works out the view it will draw (FontPreparation).
void prepareDrawingFonts();

}  // namespace quillan::cli
