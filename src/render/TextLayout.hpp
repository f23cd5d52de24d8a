#pragma once

#include <optional>
#include <vector>

#include "render/Geometry.hpp"
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

struct TextLimits {
  std::optional<double> width;   // nothing: one line per paragraph (ideal size)
  std::optional<double> height;  // only whole lines that fit, at least one
  std::optional<int> lineLimit;
};

// Greedy word wrap at `limits.width` (a word longer than the width breaks
// between characters), hard breaks at newlines, then tail truncation with "…"
// when the line limit or the height cuts the text.
TextLayout layoutText(const StyledText& text, const TextMeasurer& measurer, const TextLimits& limits);

}  // namespace quillan::render
