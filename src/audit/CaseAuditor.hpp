#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "audit/AuditCase.hpp"
#include "audit/AuditThresholds.hpp"
#include "audit/Finding.hpp"
#include "platform/Date.hpp"
#include "render/DrawingFunctions.hpp"

namespace quillan::audit {

// Builds, lays out, draws and checks cases in this process, on the journal,
// clock and zone the host has made the process defaults. Each case starts
// from `seed` again and sets its own locale, so a case's findings do not
// depend on which cases came before it (or on which worker drew it).
class CaseAuditor {
 public:
  CaseAuditor(const render::DrawingFunctions& drawing, std::uint64_t seed, AuditThresholds thresholds = {});

  std::vector<Finding> audit(const AuditCase& auditCase);

  // The case's picture at `scale`, as audit() drew it (at its own scale) for the checks.
  render::PixelImage picture(const AuditCase& auditCase, double scale);

 private:
  render::WidgetReview inspect(const AuditCase& auditCase, double scale);
  render::WidgetReview inspect(const AuditCase& auditCase, double scale, views::LayoutDirection direction);
  const platform::Date& entryDateOf(const std::string& kind);
  void useLocale(const std::string& identifier);

  const render::DrawingFunctions& drawing_;
  std::uint64_t seed_;
  AuditThresholds thresholds_;
  std::string currentLocale_;
  // The entry a widget shows is the same in every case of the run.
  std::map<std::string, platform::Date> entryDates_;
};

}  // namespace quillan::audit
