#include "audit/WidgetAudit.hpp"

#include "audit/ClippingCheck.hpp"
#include "audit/ContrastCheck.hpp"
#include "audit/InkClippingCheck.hpp"
#include "audit/InkOverlapCheck.hpp"
#include "audit/MissingGlyphCheck.hpp"
#include "audit/OverlapCheck.hpp"
#include "audit/TapTargetCheck.hpp"
#include "audit/TruncationCheck.hpp"

namespace quillan::audit {

std::vector<Finding> auditWidget(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  using Check = std::vector<Finding> (*)(const render::WidgetReview&, const AuditThresholds&);
  static constexpr Check kWidgetChecks[] = {&findMissingGlyphs,    &findClippedElements, &findClippedInk,
                                            &findHiddenPoints,     &findLowContrast,     &findTapTargetProblems,
                                            &findOverlappingTexts, &findOverlappingInk};
  std::vector<Finding> findings;
  for (const Check check : kWidgetChecks) {
    auto found = check(widget, thresholds);
    findings.insert(findings.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
  }
  return findings;
}

}  // namespace quillan::audit
