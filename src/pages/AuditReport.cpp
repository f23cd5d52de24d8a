#include "pages/AuditReport.hpp"

#include "pages/HtmlText.hpp"
#include "pages/PageSkeleton.hpp"

namespace quillan::pages {
namespace {

constexpr const char* kAuditStyleRules =
    R"(body { font-family: Inter, system-ui, sans-serif; background: #f2f2f7; color: #1c1c1e; margin: 2em; }
table { border-collapse: collapse; margin-bottom: 2em; } td, th { padding: 0.2em 0.8em; border-bottom: 1px solid #d1d1d6; }
td.number { text-align: right; font-variant-numeric: tabular-nums; } .error { color: #c0392b; } .warning { color: #b9770e; }
section { margin-bottom: 1.5em; } h3 { font-family: monospace; font-size: 0.95em; } img { border: 1px solid #d1d1d6; }
)";

std::string countCells(const audit::AuditSummary::SeverityCounts& counts) {
  return "<td class=\"number error\">" + std::to_string(counts[2]) + "</td><td class=\"number warning\">" +
         std::to_string(counts[1]) + "</td><td class=\"number\">" + std::to_string(counts[0]) + "</td>";
}

constexpr const char* kCountHeadings = "<th>errors</th><th>warnings</th><th>notes</th>";

template <typename Map>
std::string countTable(const char* title, const char* keyHeading, const Map& counts) {
  std::string html = "<h2>" + std::string(title) + "</h2>\n<table>\n<tr><th>" + keyHeading + "</th>" + kCountHeadings +
                     "</tr>\n";
  for (const auto& [key, row] : counts) html += "<tr><td>" + htmlEscaped(key) + "</td>" + countCells(row) + "</tr>\n";
  return html + "</table>\n";
}

std::string checkAndKindTable(const audit::AuditSummary& summary) {
  std::string html = "<h2>By check and widget</h2>\n<table>\n<tr><th>check</th><th>widget</th>" +
                     std::string(kCountHeadings) + "</tr>\n";
  for (const auto& [key, row] : summary.byCheckAndKind())
    html += "<tr><td>" + htmlEscaped(key.first) + "</td><td>" + htmlEscaped(key.second) + "</td>" + countCells(row) +
            "</tr>\n";
  return html + "</table>\n";
}

std::string exampleSection(const audit::Finding& finding, const std::string& crop) {
  const std::string severity(views::toString(finding.severity));
  return "<section>\n<h3>" + htmlEscaped(finding.auditCase.name()) + "</h3>\n<p><span class=\"" + severity + "\">" +
         severity + "</span> " + htmlEscaped(std::string(views::toString(finding.check))) + ": " +
         htmlEscaped(finding.element) + " — " + htmlNumber(finding.measured) + " " + htmlEscaped(finding.unit) +
         " (limit " + htmlNumber(finding.limit) + ")<br>" + htmlEscaped(finding.detail) + "</p>\n<img src=\"" +
         htmlEscaped(crop) + "\" alt=\"" + htmlEscaped(finding.element) + "\">\n</section>\n";
}

}  // namespace

std::string auditReportPage(const audit::AuditSummary& summary, std::size_t cases,
                            const std::vector<std::string>& crops) {
  std::string html = "<p>" + std::to_string(cases) + " cases audited. Every finding is in audit.json.</p>\n";
  html += checkAndKindTable(summary);
  html += countTable("By locale", "locale", summary.byLocale());
  html += countTable("By text size", "text size", summary.byDynamicType());
  html += "<h2>The first finding of each kind</h2>\n";
  for (std::size_t i = 0; i < summary.examples().size() && i < crops.size(); ++i)
    html += exampleSection(summary.examples()[i], crops[i]);
  return htmlPage("Quillan widgets: audit", kAuditStyleRules, html);
}

}  // namespace quillan::pages
