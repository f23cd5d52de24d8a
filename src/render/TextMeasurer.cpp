#include "render/TextMeasurer.hpp"

#include "render/TextLayout.hpp"

namespace quillan::render {

TextLayout TextMeasurer::layout(const StyledText& runs, const TextLimits& limits) const {
  return layoutText(runs, *this, limits);
}

void TextMeasurer::expectFonts(const std::vector<FontDescription>& /*fonts*/) const {}

}  // namespace quillan::render
