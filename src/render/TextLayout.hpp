#pragma once

#include <compare>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "render/Geometry.hpp"
#include "render/ShownTextBound.hpp"
#include "render/StyledRun.hpp"
#include "render/TextMeasurer.hpp"

namespace quillan::render {

// What a text engine that lays out whole paragraphs keeps of one layout, so
// that drawing shows exactly what was measured (see PangoParagraph).
struct ShapedParagraph;

// A font some glyphs of a line were drawn with, after fallback.
struct UsedFont {
  std::string family;
  double size = 0;
  auto operator<=>(const UsedFont&) const = default;
};

// One laid-out line: the text it shows (an ellipsis included), its width
// without trailing spaces, and the fonts its glyphs came from.
struct TextLine {
  StyledText runs;
  double width = 0;
  std::vector<UsedFont> fonts;
};

// Text broken into lines for one proposal. `size` is unsnapped: the widest
// line by the number of lines times the line pitch. `ascender` is the first
// baseline's distance below the top.
struct TextLayout {
  std::vector<TextLine> lines;
  Size size;
  double lineHeight = 0;
  double ascender = 0;
  bool truncated = false;
  std::size_t missingGlyphs = 0;
  std::shared_ptr<const ShapedParagraph> shaped;
};

// Greedy word wrap at `limits.width` (a word longer than the width breaks
// between characters), hard breaks at newlines, then tail truncation with "…"
// when the line limit or the height cuts the text. Only as much of the text is
// looked at as the limits can show (ShownTextBound).
TextLayout layoutText(const StyledText& text, const TextMeasurer& measurer, const TextLimits& limits);

}  // namespace quillan::render
