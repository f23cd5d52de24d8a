#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>

#include "audit/AuditBaseline.hpp"
#include "audit/AuditMatrix.hpp"
#include "audit/AuditSummary.hpp"
#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "render/DrawingFunctions.hpp"

namespace quillan::audit {

struct AuditRunSettings {
  AuditMatrix matrix;
  std::size_t jobs = 1;
  std::uint64_t seed = 0;
  AuditThresholds thresholds = {};
  const AuditBaseline* baseline = nullptr;
  std::ostream* progress = nullptr;  // a terminal to show progress on, if any
  AuditSummary* summary = nullptr;   // gathers what the report page shows, if it is written
};

// What a run found, by severity, those the baseline accepted left out.
struct AuditOutcome {
  std::size_t cases = 0;
  std::array<std::size_t, 3> newCounts{};

  // Whether a new finding is at least as severe as `failOn`: the run's exit status.
  bool fails(Severity failOn) const;
};

// Audits every case of the matrix in `settings.jobs` worker processes and
// writes audit.json to `json` as the findings arrive, in the cases' order.
AuditOutcome runAudit(const AuditRunSettings& settings, const render::DrawingFunctions& drawing, std::ostream& json);

}  // namespace quillan::audit
