#include "audit/TruncationCheck.hpp"

#include <algorithm>

#include "audit/GraphemeCount.hpp"

namespace quillan::audit {

namespace {

constexpr std::string_view kTruncationEllipsis = "…";

// What the reader sees of the content: the shown lines without the ellipsis
// the cut added and without the breaks between lines.
std::size_t shownGraphemes(const std::string& shown) {
  std::string visible;
  for (char c : shown)
    if (c != '\n') visible += c;
  if (visible.ends_with(kTruncationEllipsis)) visible.resize(visible.size() - kTruncationEllipsis.size());
  return graphemeCount(visible);
}

}  // namespace

std::vector<Finding> findHiddenPoints(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  std::vector<Finding> findings;
  for (const auto& element : widget.elements) {
    if (!element.isText || !element.truncated) continue;
    // A text shorter than the threshold cannot show more than all of itself.
    const std::size_t wanted = std::min(thresholds.minimumShownGraphemes, graphemeCount(element.text));
    const std::size_t shown = shownGraphemes(element.shownText);
    if (shown >= wanted) continue;
    findings.push_back({.check = AuditCheck::truncation,
                        .severity = Severity::error,
                        .element = element.path,
                        .measured = static_cast<double>(shown),
                        .limit = static_cast<double>(wanted),
                        .unit = "graphemes shown",
                        .detail = element.shownText + " (of " + element.text + ")",
                        .frame = element.frame});
  }
  return findings;
}

}  // namespace quillan::audit
