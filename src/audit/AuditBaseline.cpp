#include "audit/AuditBaseline.hpp"

#include <fstream>
#include <functional>
#include <string>

#include <nlohmann/json.hpp>

#include "hosting/UsageError.hpp"

namespace quillan::audit {

namespace {

std::uint64_t findingKey(const nlohmann::json& finding) {
  const auto& auditCase = finding.at("case");
  std::string key;
  for (const char* part : {"check", "element", "unit"}) key += finding.at(part).get<std::string>() + '\t';
  for (const char* part : {"kind", "locale", "dynamicType", "colorScheme", "renderingMode"})
    key += auditCase.at(part).get<std::string>() + '\t';
  return std::hash<std::string>{}(key);
}

std::string_view withoutTrailingComma(std::string_view line) {
  while (!line.empty() && (line.back() == ',' || line.back() == '\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

AuditBaseline AuditBaseline::read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw hosting::badOption("--baseline", "cannot read", path.string());
  AuditBaseline baseline;
  std::string line;
  bool sawVersion = false;
  while (std::getline(file, line)) {
    sawVersion = sawVersion || line.starts_with("\"version\": ");
    if (!line.starts_with("{\"check\":")) continue;
    try {
      baseline.keys_.insert(findingKey(nlohmann::json::parse(withoutTrailingComma(line))));
    } catch (const nlohmann::json::exception&) {
      throw hosting::badOption("--baseline", "not an audit.json", path.string());
    }
  }
  if (!sawVersion) throw hosting::badOption("--baseline", "not an audit.json", path.string());
  return baseline;
}

bool AuditBaseline::accepts(std::string_view line) const {
  if (keys_.empty()) return false;
  return keys_.contains(findingKey(nlohmann::json::parse(line)));
}

}  // namespace quillan::audit
