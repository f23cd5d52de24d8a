#pragma once

#include <array>
#include <string>

#include "audit/AuditCase.hpp"
#include "render/Geometry.hpp"
#include "views/EnumNames.hpp"

namespace quillan::audit {

// How bad a finding is; `--fail-on` names the least that fails the run.
enum class Severity { info, warning, error };

// What a reviewer looks for in every case.
enum class AuditCheck { missingGlyphs, clipping, truncation, contrast, tapTarget, mirroring, overlap };

constexpr auto enumNames(Severity) {
  using enum Severity;
  return std::array<views::EnumName<Severity>, 3>{{{info, "info"}, {warning, "warning"}, {error, "error"}}};
}

constexpr auto enumNames(AuditCheck) {
  using enum AuditCheck;
  return std::array<views::EnumName<AuditCheck>, 7>{{{missingGlyphs, "missingGlyphs"},
                                                     {clipping, "clipping"},
                                                     {truncation, "truncation"},
                                                     {contrast, "contrast"},
                                                     {tapTarget, "tapTarget"},
                                                     {mirroring, "mirroring"},
                                                     {overlap, "overlap"}}};
}

// One thing a reviewer would flag: which check, in which case, on which
// element (its path in the laid-out tree), what was measured against what
// the check allows, and where on the widget, in points.
struct Finding {
  AuditCheck check = AuditCheck::missingGlyphs;
  Severity severity = Severity::error;
  AuditCase auditCase = {};
  std::string element = {};
  double measured = 0;
  double limit = 0;
  std::string unit = {};
  std::string detail = {};  // one line a person reads: the text concerned, the other element
  render::Rect frame = {};
};

}  // namespace quillan::audit
