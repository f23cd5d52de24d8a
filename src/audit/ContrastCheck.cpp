#include "audit/ContrastCheck.hpp"

#include <algorithm>

#include "audit/ContrastRatio.hpp"
#include "audit/WidgetMask.hpp"

namespace quillan::audit {

namespace {

// Large text, in WCAG's terms: 18 pt, or 14 pt and bold.
bool isLargeText(const render::ReviewedElement& element) {
  return element.fontSize >= 18 || (element.bold && element.fontSize >= 14);
}

render::Rgba colorOf(const render::PixelImage::Pixel& pixel) {
  return {pixel.red / 255.0, pixel.green / 255.0, pixel.blue / 255.0, 1};
}

// What is painted behind the glyphs: the picture's pixels inside the text's
// frame where the text itself put no ink, and the widget shows them.
std::vector<render::Rgba> backgroundSamples(const render::WidgetReview& widget,
                                            const render::ReviewedElement& element) {
  const auto& picture = *widget.picture;
  const auto& ink = *element.ink;
  const int left = std::max(0, static_cast<int>(element.frame.x * widget.scale));
  const int top = std::max(0, static_cast<int>(element.frame.y * widget.scale));
  const int right = std::min(picture.width, static_cast<int>(element.frame.maxX() * widget.scale));
  const int bottom = std::min(picture.height, static_cast<int>(element.frame.maxY() * widget.scale));
  std::vector<render::Rgba> samples;
  for (int y = top; y < bottom; ++y)
    for (int x = left; x < right; ++x)
      if (ink.at(x, y) == 0 && insideWidgetMask(widget, x, y)) samples.push_back(colorOf(picture.at(x, y)));
  return samples;
}

// The background the text is read against: the middle sample by luminance,
// which a stray neighbour's edge or a gradient's far end does not move.
render::Rgba typicalBackground(std::vector<render::Rgba>& samples) {
  const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
  std::nth_element(samples.begin(), middle, samples.end(), [](const render::Rgba& a, const render::Rgba& b) {
    return relativeLuminance(a) < relativeLuminance(b);
  });
  return *middle;
}

}  // namespace

std::vector<Finding> findLowContrast(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  std::vector<Finding> findings;
  if (!widget.picture) return findings;
  for (const auto& element : widget.elements) {
    if (!element.ink || element.ink->coverage.empty()) continue;
    auto samples = backgroundSamples(widget, element);
    if (samples.empty()) continue;
    const auto background = typicalBackground(samples);
    const double ratio = contrastRatio(composited(element.color, background), background);
    const double wanted = isLargeText(element) ? thresholds.minimumLargeTextContrast : thresholds.minimumContrast;
    if (ratio >= wanted) continue;
    findings.push_back({.check = AuditCheck::contrast,
                        .severity = Severity::error,
                        .element = element.path,
                        .measured = ratio,
                        .limit = wanted,
                        .unit = ":1 contrast",
                        .detail = element.shownText,
                        .frame = element.frame});
  }
  return findings;
}

}  // namespace quillan::audit
