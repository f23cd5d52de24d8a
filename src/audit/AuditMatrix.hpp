#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "audit/AuditCase.hpp"

namespace quillan::audit {

// The lists whose every combination the audit draws.
struct AuditMatrix {
  std::vector<std::string> kinds;
  std::vector<std::string> locales;
  std::vector<std::string> dynamicTypes;
  std::vector<std::string> colorSchemes;
  std::vector<std::string> renderingModes;
};

// The values of one option as given: "all", or names separated by commas.
// Each parser checks every name and throws UsageError naming `option` and
// the first bad one; an empty list is refused too.
std::vector<std::string> parseKinds(const std::vector<std::string>& given);
std::vector<std::string> parseLocales(const std::string& given);
std::vector<std::string> parseDynamicTypes(const std::string& given);
std::vector<std::string> parseColorSchemes(const std::string& given);
std::vector<std::string> parseRenderingModes(const std::string& given);

// Every combination is numbered, kinds varying slowest, then locales, text
// sizes, schemes and modes: cases of one kind and locale follow each other, so
// what they share is computed once. Cases are made one at a time from their
// number, as the whole matrix of them would weigh tens of megabytes.
std::size_t caseCount(const AuditMatrix& matrix);
AuditCase caseAt(const AuditMatrix& matrix, std::size_t index);

}  // namespace quillan::audit
