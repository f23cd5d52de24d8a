#pragma once

#include "render/TextMeasurer.hpp"

namespace quillan::render {

// A measurer with a fixed advance per character (code point) and a fixed line
// height, whatever the font, so layout tests get exact, font-free numbers.
class FakeTextMeasurer final : public TextMeasurer {
 public:
  explicit FakeTextMeasurer(double advance = 10.0, double lineHeight = 20.0)
      : advance_(advance), lineHeight_(lineHeight) {}

  double width(const StyledText& runs) const override;
  FontMetrics metrics(const FontDescription& font) const override;

 private:
  double advance_;
  double lineHeight_;
};

}  // namespace quillan::render
