#pragma once

#include <vector>

#include "render/FontDescription.hpp"
#include "render/ShownTextBound.hpp"
#include "render/StyledRun.hpp"

namespace quillan::render {

struct TextLayout;

// Vertical metrics of a font, in points.
struct FontMetrics {
  double lineHeight = 0;
  double ascender = 0;
  double descender = 0;
  double capHeight = 0;
};

// Measures text for layout. Layout never talks to a font library itself, so
// tests can swap in a measurer with round numbers (FakeTextMeasurer).
class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;
  // The advance width of `runs` set on one line, tracking included.
  virtual double width(const StyledText& runs) const = 0;
  virtual FontMetrics metrics(const FontDescription& font) const = 0;
  // The fonts of the texts about to be measured, each once: a measurer that
  // loads fonts may start on all of them before the first text needs one.
  virtual void expectFonts(const std::vector<FontDescription>& fonts) const;
  // `runs` broken into lines for `limits`. Unless a measurer lays out whole
  // paragraphs itself, this is the greedy word wrap of layoutText over width().
  virtual TextLayout layout(const StyledText& runs, const TextLimits& limits) const;
};

}  // namespace quillan::render
