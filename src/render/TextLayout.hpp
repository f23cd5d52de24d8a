#pragma once

#include <optional>
#include <vector>

#include "render/Geometry.hpp"
#include "render/ShownTextBound.hpp"
#include "render/StyledRun.hpp"
#include "render/TextMeasurer.hpp"

namespace quillan::render {

struct TextLine {
  StyledText runs;
  double width = 0;
};

// Text broken into lines for one proposal. `size` is unsnapped: the widest
// line by the number of lines times the line pitch.
struct TextLayout {
  std::vector<TextLine> lines;
  Size size;
  double lineHeight = 0;
  double ascender = 0;
  bool truncated = false;
};

// Greedy word wrap at `limits.width` (a word longer than the width breaks
// between characters), hard breaks at newlines, then tail truncation with "…"
// when the line limit or the height cuts the text. Only as much of the text is
// looked at as the limits can show (ShownTextBound).
TextLayout layoutText(const StyledText& text, const TextMeasurer& measurer, const TextLimits& limits);

}  // namespace quillan::render
