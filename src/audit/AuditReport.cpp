#include "audit/AuditReport.hpp"

#include <cmath>

#include <nlohmann/json.hpp>

namespace quillan::audit {

namespace {

constexpr int kAuditJsonVersion = 1;

// Measurements to a thousandth: finer is float noise and would churn baselines.
double roundedMeasure(double value) { return std::round(value * 1000) / 1000; }

nlohmann::ordered_json caseJson(const AuditCase& auditCase) {
  return {{"kind", auditCase.kind},
          {"locale", auditCase.locale},
          {"dynamicType", auditCase.dynamicType},
          {"colorScheme", auditCase.colorScheme},
          {"renderingMode", auditCase.renderingMode}};
}

nlohmann::ordered_json findingJson(const Finding& finding) {
  const auto& frame = finding.frame;
  return {
      {"check", views::toString(finding.check)},
      {"severity", views::toString(finding.severity)},
      {"case", caseJson(finding.auditCase)},
      {"element", finding.element},
      {"measured", roundedMeasure(finding.measured)},
      {"limit", roundedMeasure(finding.limit)},
      {"unit", finding.unit},
      {"detail", finding.detail},
      {"frame",
       {roundedMeasure(frame.x), roundedMeasure(frame.y), roundedMeasure(frame.width), roundedMeasure(frame.height)}}};
}

nlohmann::ordered_json severityCounts(const std::vector<Finding>& findings) {
  nlohmann::ordered_json counts;
  for (const auto& row : enumNames(Severity{})) counts[std::string(row.name)] = 0;
  for (const auto& finding : findings) {
    auto& count = counts[std::string(views::toString(finding.severity))];
    count = count.get<std::size_t>() + 1;
  }
  return counts;
}

}  // namespace

std::string auditJson(const AuditReport& report) {
  nlohmann::ordered_json json;
  json["version"] = kAuditJsonVersion;
  json["matrix"] = {{"kinds", report.matrix.kinds},
                    {"locales", report.matrix.locales},
                    {"dynamicTypes", report.matrix.dynamicTypes},
                    {"colorSchemes", report.matrix.colorSchemes},
                    {"renderingModes", report.matrix.renderingModes}};
  json["cases"] = report.cases;
  json["counts"] = severityCounts(report.findings);
  auto findings = nlohmann::ordered_json::array();
  for (const auto& finding : report.findings) findings.push_back(findingJson(finding));
  json["findings"] = std::move(findings);
  // A journal's text is shown as it is, and may not be UTF-8; the file stays valid JSON.
  return json.dump(1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

bool reachesSeverity(const std::vector<Finding>& findings, Severity failOn) {
  for (const auto& finding : findings)
    if (finding.severity >= failOn) return true;
  return false;
}

}  // namespace quillan::audit
