#include "audit/FindingJson.hpp"

#include <cmath>

#include <nlohmann/json.hpp>

namespace quillan::audit {

namespace {

// Measurements to a thousandth: finer is float noise and would churn baselines.
double roundedMeasure(double value) { return std::round(value * 1000) / 1000; }

}  // namespace

std::string findingJson(const Finding& finding) {
  const auto& frame = finding.frame;
  const auto& auditCase = finding.auditCase;
  const nlohmann::ordered_json json = {
      {"check", views::toString(finding.check)},
      {"severity", views::toString(finding.severity)},
      {"case",
       {{"kind", auditCase.kind},
        {"locale", auditCase.locale},
        {"dynamicType", auditCase.dynamicType},
        {"colorScheme", auditCase.colorScheme},
        {"renderingMode", auditCase.renderingMode}}},
      {"element", finding.element},
      {"measured", roundedMeasure(finding.measured)},
      {"limit", roundedMeasure(finding.limit)},
      {"unit", finding.unit},
      {"detail", finding.detail},
      {"frame",
       {roundedMeasure(frame.x), roundedMeasure(frame.y), roundedMeasure(frame.width), roundedMeasure(frame.height)}}};
  // A journal's text is shown as it is, and may not be UTF-8; the line stays valid JSON.
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace quillan::audit
