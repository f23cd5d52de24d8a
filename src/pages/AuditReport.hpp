#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "audit/AuditSummary.hpp"

namespace quillan::pages {

// The audit's index.html: findings counted by check and widget, by locale and
// by text size, then each example finding with its case, measurement and the
// crop of its picture (`crops[i]` for `summary.examples()[i]`, relative to
// the page) with the element outlined.
std::string auditReportPage(const audit::AuditSummary& summary, std::size_t cases,
                            const std::vector<std::string>& crops);

}  // namespace quillan::pages
