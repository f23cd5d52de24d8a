#include "audit/InkOverlapCheck.hpp"

#include <algorithm>

namespace quillan::audit {

namespace {

// Half-covered pixels of both texts: glyph touching glyph, not rim touching rim.
constexpr std::uint8_t kInkOverlapCoverage = 128;

std::size_t sharedInkPixels(const render::InkMask& a, const render::InkMask& b) {
  const int left = std::max(a.left, b.left), right = std::min(a.left + a.width, b.left + b.width);
  const int top = std::max(a.top, b.top), bottom = std::min(a.top + a.height, b.top + b.height);
  std::size_t shared = 0;
  for (int y = top; y < bottom; ++y)
    for (int x = left; x < right; ++x)
      if (a.at(x, y) >= kInkOverlapCoverage && b.at(x, y) >= kInkOverlapCoverage) ++shared;
  return shared;
}

}  // namespace

std::vector<Finding> findOverlappingInk(const render::WidgetReview& widget, const AuditThresholds&) {
  std::vector<const render::ReviewedElement*> inked;
  for (const auto& element : widget.elements)
    if (element.ink && !element.ink->coverage.empty()) inked.push_back(&element);
  std::vector<Finding> findings;
  for (std::size_t i = 0; i < inked.size(); ++i) {
    for (std::size_t j = i + 1; j < inked.size(); ++j) {
      const std::size_t shared = sharedInkPixels(*inked[i]->ink, *inked[j]->ink);
      if (shared == 0) continue;
      findings.push_back({.check = AuditCheck::overlap,
                          .severity = Severity::error,
                          .element = inked[i]->path,
                          .measured = static_cast<double>(shared),
                          .limit = 0,
                          .unit = "pixels of ink shared",
                          .detail = "ink overlaps " + inked[j]->path,
                          .frame = inked[i]->frame});
    }
  }
  return findings;
}

}  // namespace quillan::audit
