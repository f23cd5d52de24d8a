#pragma once

#include <cstddef>

#include "render/StyledRun.hpp"

namespace quillan::render {

// The runs of a text kept up to `maxCodePoints`, cut back to a grapheme
// boundary, and whether anything was left off. Nothing past the cut is copied,
// so cutting a text of a megabyte costs what the kept part costs.
struct CutText {
  StyledText runs;
  bool cut = false;
};

CutText cutToCodePoints(const StyledText& runs, std::size_t maxCodePoints);

}  // namespace quillan::render
