#include "audit/MirroringCheck.hpp"

#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace quillan::audit {

namespace {

// Texts by what they show, then by how often that text came before (two
// "0" labels are the first "0" and the second); other elements by path. In
// the elements' order, so findings come out in the order of the tree.
std::vector<std::string> identitiesOf(const render::WidgetReview& widget) {
  std::vector<std::string> identities;
  std::map<std::string, int> seen;
  for (const auto& element : widget.elements) {
    const auto base = element.isText ? "text:" + element.text : "path:" + element.path;
    identities.push_back(base + "#" + std::to_string(seen[base]++));
  }
  return identities;
}

std::multimap<std::string, const render::HitRegion*> targetsByURL(const render::WidgetReview& widget) {
  std::multimap<std::string, const render::HitRegion*> byURL;
  for (const auto& region : widget.hitRegions) byURL.emplace(region.url, &region);
  return byURL;
}

render::Rect mirrorImageOf(const render::Rect& rect, double widgetWidth) {
  return {widgetWidth - rect.x - rect.width, rect.y, rect.width, rect.height};
}

// How far `actual` sits from where the mirror image of `leftToRight` would be.
double distanceFromMirror(const render::Rect& leftToRight, const render::Rect& actual, double widgetWidth) {
  const auto expected = mirrorImageOf(leftToRight, widgetWidth);
  return std::max(std::abs(expected.x - actual.x), std::abs(expected.y - actual.y));
}

std::string whereItSits(const render::Rect& leftToRight, const render::Rect& actual, double tolerance) {
  return std::abs(leftToRight.x - actual.x) <= tolerance ? "stays where the left-to-right layout has it"
                                                         : "is not at the mirror of its left-to-right place";
}

// `what` (a text, or "tap target") at `actual`, `distance` from the mirror of `leftToRight`.
Finding misplaced(const std::string& element, const std::string& what, const render::Rect& leftToRight,
                  const render::Rect& actual, double distance, const AuditThresholds& thresholds) {
  return {.check = AuditCheck::mirroring,
          .severity = Severity::error,
          .element = element,
          .measured = distance,
          .limit = thresholds.frameTolerance,
          .unit = "pt from its mirrored place",
          .detail = what + whereItSits(leftToRight, actual, thresholds.frameTolerance),
          .frame = actual};
}

void findMisplacedElements(const render::WidgetReview& leftToRight, const render::WidgetReview& rightToLeft,
                           const AuditThresholds& thresholds, std::vector<Finding>& findings) {
  std::map<std::string, const render::ReviewedElement*> before;
  const auto beforeIdentities = identitiesOf(leftToRight);
  for (std::size_t i = 0; i < beforeIdentities.size(); ++i)
    before.emplace(beforeIdentities[i], &leftToRight.elements[i]);
  const auto identities = identitiesOf(rightToLeft);
  for (std::size_t i = 0; i < identities.size(); ++i) {
    const auto& element = rightToLeft.elements[i];
    const auto match = before.find(identities[i]);
    // Another width is other content (text shaped the other way may differ by a hair).
    if (match == before.end() || std::abs(match->second->frame.width - element.frame.width) > thresholds.frameTolerance)
      continue;
    const auto& ltrFrame = match->second->frame;
    const double distance = distanceFromMirror(ltrFrame, element.frame, rightToLeft.size.width);
    if (distance <= thresholds.frameTolerance) continue;
    findings.push_back(misplaced(element.path, element.isText ? element.shownText + " " : std::string(), ltrFrame,
                                 element.frame, distance, thresholds));
  }
}

void findMisplacedTargets(const render::WidgetReview& leftToRight, const render::WidgetReview& rightToLeft,
                          const AuditThresholds& thresholds, std::vector<Finding>& findings) {
  const auto after = targetsByURL(rightToLeft);
  for (const auto& region : leftToRight.hitRegions) {
    const auto [first, last] = after.equal_range(region.url);
    if (first == last) continue;
    double nearest = INFINITY;
    const render::HitRegion* closest = nullptr;
    for (auto candidate = first; candidate != last; ++candidate) {
      const double distance = distanceFromMirror(region.rect, candidate->second->rect, rightToLeft.size.width);
      if (distance < nearest) std::tie(nearest, closest) = std::pair{distance, candidate->second};
    }
    if (nearest <= thresholds.frameTolerance) continue;
    findings.push_back(misplaced(region.url, "tap target ", region.rect, closest->rect, nearest, thresholds));
  }
}

}  // namespace

std::vector<Finding> findUnmirroredElements(const render::WidgetReview& leftToRight,
                                            const render::WidgetReview& rightToLeft,
                                            const AuditThresholds& thresholds) {
  std::vector<Finding> findings;
  findMisplacedElements(leftToRight, rightToLeft, thresholds, findings);
  findMisplacedTargets(leftToRight, rightToLeft, thresholds, findings);
  return findings;
}

}  // namespace quillan::audit
