#include "audit/AuditSummary.hpp"

#include <nlohmann/json.hpp>

namespace quillan::audit {

Finding findingFromJson(std::string_view line) {
  const auto json = nlohmann::json::parse(line);
  const auto& auditCase = json.at("case");
  const auto& frame = json.at("frame");
  return {.check = views::fromString<AuditCheck>(json.at("check").get<std::string>()).value_or(AuditCheck::clipping),
          .severity = views::fromString<Severity>(json.at("severity").get<std::string>()).value_or(Severity::error),
          .auditCase = {auditCase.at("kind"), auditCase.at("locale"), auditCase.at("dynamicType"),
                        auditCase.at("colorScheme"), auditCase.at("renderingMode")},
          .element = json.at("element"),
          .measured = json.at("measured"),
          .limit = json.at("limit"),
          .unit = json.at("unit"),
          .detail = json.at("detail"),
          .frame = {frame.at(0), frame.at(1), frame.at(2), frame.at(3)}};
}

void AuditSummary::add(std::string_view line) {
  auto finding = findingFromJson(line);
  const auto severity = static_cast<std::size_t>(finding.severity);
  const auto& auditCase = finding.auditCase;
  ++byCheckAndKind_[{std::string(views::toString(finding.check)), auditCase.kind}][severity];
  ++byLocale_[auditCase.locale][severity];
  ++byDynamicType_[auditCase.dynamicType][severity];
  if (examples_.size() >= kMaxExamples) return;
  const auto key = std::make_tuple(std::string(views::toString(finding.check)),
                                   std::string(views::toString(finding.severity)), auditCase.kind, finding.element);
  if (exampleKeys_.insert(key).second) examples_.push_back(std::move(finding));
}

}  // namespace quillan::audit
