#include "audit/InkClippingCheck.hpp"

#include "audit/WidgetMask.hpp"

namespace quillan::audit {

namespace {

// A pixel at least half covered is ink a reader would miss; fainter ones are
// the anti-aliased rim every glyph has.
constexpr std::uint8_t kInkClippingCoverage = 128;

std::size_t pixelsCut(const render::WidgetReview& widget, const render::InkMask& ink) {
  std::size_t cut = 0;
  for (int y = ink.top; y < ink.top + ink.height; ++y)
    for (int x = ink.left; x < ink.left + ink.width; ++x)
      if (ink.at(x, y) >= kInkClippingCoverage && !insideWidgetMask(widget, x, y)) ++cut;
  return cut;
}

}  // namespace

std::vector<Finding> findClippedInk(const render::WidgetReview& widget, const AuditThresholds&) {
  std::vector<Finding> findings;
  for (const auto& element : widget.elements) {
    if (!element.ink) continue;
    if (const std::size_t cut = pixelsCut(widget, *element.ink); cut > 0) {
      findings.push_back({.check = AuditCheck::clipping,
                          .severity = Severity::error,
                          .element = element.path,
                          .measured = static_cast<double>(cut),
                          .limit = 0,
                          .unit = "pixels of ink cut by the mask",
                          .detail = element.shownText,
                          .frame = element.frame});
    }
  }
  return findings;
}

}  // namespace quillan::audit
