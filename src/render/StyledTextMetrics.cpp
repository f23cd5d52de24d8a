#include "render/StyledTextMetrics.hpp"

#include <algorithm>

namespace quillan::render {

FontMetrics combinedMetrics(const StyledText& text, const TextMeasurer& measurer) {
  if (text.empty()) return measurer.metrics(FontDescription{});
  FontMetrics result{};
  for (const auto& run : text) {
    const FontMetrics m = measurer.metrics(run.font);
    result.lineHeight = std::max(result.lineHeight, m.lineHeight);
    result.ascender = std::max(result.ascender, m.ascender);
    result.descender = std::max(result.descender, m.descender);
    result.capHeight = std::max(result.capHeight, m.capHeight);
  }
  return result;
}

double smallestFontSize(const StyledText& text) {
  double smallest = text.empty() ? FontDescription{}.size : text.front().font.size;
  for (const auto& run : text) smallest = std::min(smallest, run.font.size);
  return smallest;
}

}  // namespace quillan::render
