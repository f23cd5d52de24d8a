#include "audit/TapTargetCheck.hpp"

#include <algorithm>

#include "audit/Intersection.hpp"

namespace quillan::audit {

namespace {

bool coversWidget(const render::HitRegion& region, const render::Size& size) {
  return region.rect == render::Rect{0, 0, size.width, size.height};
}

}  // namespace

std::vector<Finding> findTapTargetProblems(const render::WidgetReview& widget, const AuditThresholds& thresholds) {
  std::vector<Finding> findings;
  const auto& regions = widget.hitRegions;
  for (std::size_t i = 0; i < regions.size(); ++i) {
    // The widget's own URL answers every tap the links leave: it is meant to lie under them.
    if (coversWidget(regions[i], widget.size)) continue;
    const auto& rect = regions[i].rect;
    if (const double side = std::min(rect.width, rect.height); side < thresholds.minimumTapSide) {
      findings.push_back({.check = AuditCheck::tapTarget,
                          .severity = Severity::warning,
                          .element = regions[i].url,
                          .measured = side,
                          .limit = thresholds.minimumTapSide,
                          .unit = "pt on its shorter side",
                          .detail = "tap target smaller than a finger",
                          .frame = rect});
    }
    for (std::size_t j = i + 1; j < regions.size(); ++j) {
      if (coversWidget(regions[j], widget.size)) continue;
      if (const double area = intersectionArea(rect, regions[j].rect); area > 0) {
        findings.push_back({.check = AuditCheck::tapTarget,
                            .severity = Severity::error,
                            .element = regions[i].url,
                            .measured = area,
                            .limit = 0,
                            .unit = "pt² shared",
                            .detail = "overlaps the target of " + regions[j].url,
                            .frame = rect});
      }
    }
  }
  return findings;
}

}  // namespace quillan::audit
