#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "audit/AuditMatrix.hpp"
#include "audit/Finding.hpp"

namespace quillan::audit {

// A whole run: what was drawn and every finding, in the cases' order.
struct AuditReport {
  AuditMatrix matrix = {};
  std::size_t cases = 0;
  std::vector<Finding> findings = {};
};

// audit.json, as docs/audit.md documents it.
std::string auditJson(const AuditReport& report);

// Whether any finding is at least as severe as `failOn`: the run's exit status.
bool reachesSeverity(const std::vector<Finding>& findings, Severity failOn);

}  // namespace quillan::audit
