#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <string_view>

#include "audit/AuditMatrix.hpp"
#include "audit/Finding.hpp"

namespace quillan::audit {

// Writes audit.json as the findings arrive, one finding a line, so that a run
// of hundreds of thousands of cases never holds them all: the matrix first,
// then the findings, then what the run counted.
class AuditJsonWriter {
 public:
  AuditJsonWriter(std::ostream& out, const AuditMatrix& matrix);

  // `line` is findingJson()'s; `accepted` marks a finding the baseline holds.
  void add(std::string_view line, Severity severity, bool accepted);
  void finish(std::size_t cases);

  // Findings per severity, those the baseline accepted left out.
  const std::array<std::size_t, 3>& newCounts() const { return newCounts_; }

 private:
  std::ostream& out_;
  bool first_ = true;
  std::array<std::size_t, 3> counts_{};
  std::array<std::size_t, 3> newCounts_{};
};

}  // namespace quillan::audit
