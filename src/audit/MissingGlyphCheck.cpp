#include "audit/MissingGlyphCheck.hpp"

namespace quillan::audit {

std::vector<Finding> findMissingGlyphs(const render::WidgetReview& widget, const AuditThresholds&) {
  std::vector<Finding> findings;
  for (const auto& element : widget.elements) {
    if (element.missingGlyphs == 0) continue;
    findings.push_back({.check = AuditCheck::missingGlyphs,
                        .severity = Severity::error,
                        .element = element.path,
                        .measured = static_cast<double>(element.missingGlyphs),
                        .limit = 0,
                        .unit = "glyphs",
                        .detail = element.shownText,
                        .frame = element.frame});
  }
  return findings;
}

}  // namespace quillan::audit
