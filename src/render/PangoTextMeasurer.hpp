#pragma once

#include <memory>

#include "render/Geometry.hpp"
#include "render/Rgba.hpp"
#include "render/TextMeasurer.hpp"

namespace quillan::render {

// Measures and draws text with Pango and the Inter fonts standing in for the
// system font: Inter below 20 pt, Inter Display from 20 pt, the size's
// automatic tracking applied, and the line pitch forced to the system font's
// (1.19336 x size) so vertical layout matches the phone exactly. Whatever
// Inter lacks falls back through fontconfig. Drawing shows the very layouts
// measuring made, so drawn text is exactly as wide as measured.
class PangoTextMeasurer final : public TextMeasurer {
 public:
  PangoTextMeasurer();
  ~PangoTextMeasurer() override;
  // The process's one text engine: loading fonts is the slow part of drawing,
  // so drawing, hit testing and layout dumps share it.
  static const PangoTextMeasurer& shared();
  PangoTextMeasurer(const PangoTextMeasurer&) = delete;
  PangoTextMeasurer& operator=(const PangoTextMeasurer&) = delete;

  double width(const StyledText& runs) const override;
  FontMetrics metrics(const FontDescription& font) const override;
  // Laid out by Pango itself (see TextLayout's `shaped`); one layout per
  // text, locale and limits, kept for drawing and hit testing.
  TextLayout layout(const StyledText& runs, const TextLimits& limits) const override;
  // Asks Pango for each font's fallback list, which has fontconfig match the
  // font on a thread of its own: the matches then run beside the layout of
  // the texts before rather than one after another as each text needs one.
  void expectFonts(const std::vector<FontDescription>& fonts) const override;
  // How many characters of `runs` no installed font has a glyph for (each
  // would draw as a box).
  std::size_t missingGlyphs(const StyledText& runs) const;

 private:
  struct Impl;
  // Made on first use: a picture without text never starts fontconfig.
  Impl& engine() const;
  mutable std::unique_ptr<Impl> impl_;
};

}  // namespace quillan::render
