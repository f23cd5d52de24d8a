#pragma once

#include <string>

namespace quillan::audit {

// One cell of the audit's matrix: a widget drawn in one locale, text size,
// colour scheme and rendering mode.
struct AuditCase {
  std::string kind;
  std::string locale;
  std::string dynamicType;
  std::string colorScheme;
  std::string renderingMode;

  // "kind/locale/dynamicType/colorScheme/renderingMode": what reports and baselines name a case by.
  std::string name() const;
  bool operator==(const AuditCase&) const = default;
};

}  // namespace quillan::audit
