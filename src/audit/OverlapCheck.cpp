#include "audit/OverlapCheck.hpp"

#include <algorithm>

#include "audit/Intersection.hpp"

namespace quillan::audit {

std::vector<Finding> findOverlappingTexts(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  std::vector<const render::ReviewedElement*> texts;
  for (const auto& element : widget.elements)
    if (element.isText && !element.shownText.empty()) texts.push_back(&element);
  std::vector<Finding> findings;
  const double tolerance = thresholds.frameTolerance * thresholds.frameTolerance;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    for (std::size_t j = i + 1; j < texts.size(); ++j) {
      const double area = intersectionArea(texts[i]->frame, texts[j]->frame);
      if (area <= tolerance) continue;
      findings.push_back({.check = AuditCheck::overlap,
                          .severity = Severity::info,
                          .element = texts[i]->path,
                          .measured = area,
                          .limit = 0,
                          .unit = "pt² of frames shared",
                          .detail = "frame overlaps " + texts[j]->path,
                          .frame = texts[i]->frame});
    }
  }
  return findings;
}

}  // namespace quillan::audit
