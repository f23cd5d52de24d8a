#include "pages/SnapshotReport.hpp"

#include <algorithm>
#include <cstdio>

#include "pages/HtmlText.hpp"
#include "pages/PageSkeleton.hpp"

namespace quillan::pages {
namespace {

constexpr const char* kSnapshotReportStyleRules =
    R"(body { font-family: Inter, system-ui, sans-serif; background: #f2f2f7; color: #1c1c1e; margin: 2em; }
section { margin-bottom: 2em; } h2 { font-family: monospace; font-size: 1em; }
.problem { color: #c0392b; } img { max-width: 100%; border: 1px solid #d1d1d6; }
)";

std::string failureSection(const snapshot::SnapshotVerdict& verdict) {
  std::string html = "<section>\n<h2>" + htmlEscaped(verdict.caseName) + "</h2>\n<p class=\"problem\">" +
                     htmlEscaped(verdict.problem) + "</p>\n";
  if (verdict.differenceImage) {
    html += "<p>Recording, new picture, difference (pixels that do not match in magenta):</p>\n<img src=\"" +
            htmlEscaped(*verdict.differenceImage) + "\" alt=\"" + htmlEscaped("difference of " + verdict.caseName) +
            "\">\n";
  }
  return html + "</section>\n";
}

std::string shortNumber(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%g", value);
  return buffer;
}

}  // namespace

std::string snapshotReportPage(const std::vector<snapshot::SnapshotVerdict>& verdicts,
                               const snapshot::SnapshotTolerance& tolerance) {
  const auto failed = std::count_if(verdicts.begin(), verdicts.end(), [](const auto& v) { return !v.passed(); });
  std::string html = "<p>" + std::to_string(verdicts.size() - failed) + " of " + std::to_string(verdicts.size()) +
                     " cases match (precision " + shortNumber(tolerance.precision) + ", perceptual precision " +
                     shortNumber(tolerance.perceptualPrecision) + ").</p>\n";
  for (const auto& verdict : verdicts) {
    if (!verdict.passed()) html += failureSection(verdict);
  }
  return htmlPage("Quillan widgets: snapshots", kSnapshotReportStyleRules, html);
}

}  // namespace quillan::pages
