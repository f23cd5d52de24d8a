#include "cli/SnapshotReport.hpp"

#include <algorithm>
#include <cstdio>

#include "cli/HtmlText.hpp"

namespace quillan::cli {
namespace {

constexpr const char* kStyle = R"(<style>
body { font-family: Inter, system-ui, sans-serif; background: #f2f2f7; color: #1c1c1e; margin: 2em; }
section { margin-bottom: 2em; } h2 { font-family: monospace; font-size: 1em; }
.problem { color: #c0392b; } img { max-width: 100%; border: 1px solid #d1d1d6; }
</style>
)";

std::string failureSection(const SnapshotVerdict& verdict) {
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

std::string snapshotReportPage(const std::vector<SnapshotVerdict>& verdicts, const SnapshotTolerance& tolerance) {
  const auto failed = std::count_if(verdicts.begin(), verdicts.end(), [](const auto& v) { return !v.passed(); });
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                     "<title>Quillan widgets: snapshots</title>\n";
  html += kStyle;
  html += "</head>\n<body>\n<h1>Quillan widgets: snapshots</h1>\n<p>" + std::to_string(verdicts.size() - failed) +
          " of " + std::to_string(verdicts.size()) + " cases match (precision " + shortNumber(tolerance.precision) +
          ", perceptual precision " + shortNumber(tolerance.perceptualPrecision) + ").</p>\n";
  for (const auto& verdict : verdicts) {
    if (!verdict.passed()) html += failureSection(verdict);
  }
  return html + "</body>\n</html>\n";
}

}  // namespace quillan::cli
