#include "audit/CaseAuditor.hpp"

#include "audit/MirroringCheck.hpp"
#include "audit/WidgetAudit.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "render/RenderContext.hpp"

namespace quillan::audit {

namespace {

// The pixel checks look at the picture at one pixel per point: what they
// measure (colours behind text, ink at edges) does not need more, and it is
// nine times fewer pixels than the phone's own @3x.
constexpr double kAuditPictureScale = 1;

views::Environment environmentOf(const AuditCase& auditCase, views::LayoutDirection direction) {
  views::Environment environment;
  environment.colorScheme = views::parseColorScheme(auditCase.colorScheme);
  environment.renderingMode = views::parseRenderingMode(auditCase.renderingMode);
  environment.dynamicTypeSize = views::parseDynamicTypeSize(auditCase.dynamicType);
  environment.layoutDirection = direction;
  return environment;
}

}  // namespace

CaseAuditor::CaseAuditor(const render::DrawingFunctions& drawing, std::uint64_t seed, AuditThresholds thresholds)
    : drawing_(drawing), seed_(seed), thresholds_(thresholds) {}

std::vector<Finding> CaseAuditor::audit(const AuditCase& auditCase) {
  const auto inspection = inspect(auditCase, kAuditPictureScale);
  auto findings = auditWidget(inspection, thresholds_);
  // A right-to-left case is also laid out left to right, to see that it mirrors.
  if (inspection.rightToLeft) {
    const auto leftToRight = inspect(auditCase, kAuditPictureScale, views::LayoutDirection::leftToRight);
    auto unmirrored = findUnmirroredElements(leftToRight, inspection, thresholds_);
    findings.insert(findings.end(), std::make_move_iterator(unmirrored.begin()),
                    std::make_move_iterator(unmirrored.end()));
  }
  for (auto& finding : findings) finding.auditCase = auditCase;
  return findings;
}

render::PixelImage CaseAuditor::picture(const AuditCase& auditCase, double scale) {
  return std::move(*inspect(auditCase, scale).picture);
}

render::WidgetReview CaseAuditor::inspect(const AuditCase& auditCase, double scale) {
  useLocale(auditCase.locale);
  return inspect(auditCase, scale,
                 platform::Locale::current().isRightToLeft() ? views::LayoutDirection::rightToLeft
                                                             : views::LayoutDirection::leftToRight);
}

render::WidgetReview CaseAuditor::inspect(const AuditCase& auditCase, double scale, views::LayoutDirection direction) {
  useLocale(auditCase.locale);
  platform::RandomSource::seed(seed_);
  const auto& widget = hosting::widgetOfKind(auditCase.kind);
  const auto context = render::makeRenderContext(environmentOf(auditCase, direction), widget.supportedFamilies.front(),
                                                 render::DeviceProfile::defaultProfile(), scale);
  const auto tree = widget.content(entryDateOf(auditCase.kind), context.env);
  // Only the case's own direction is drawn: the other layout is for its frames.
  const bool ownDirection = (direction == views::LayoutDirection::rightToLeft) ==
                            platform::Locale::current().isRightToLeft();
  return drawing_.reviewWidget(tree, context, /*withPicture=*/ownDirection);
}

const platform::Date& CaseAuditor::entryDateOf(const std::string& kind) {
  auto found = entryDates_.find(kind);
  if (found == entryDates_.end())
    found = entryDates_.emplace(kind, hosting::currentEntryDate(hosting::widgetOfKind(kind))).first;
  return found->second;
}

void CaseAuditor::useLocale(const std::string& identifier) {
  if (identifier == currentLocale_) return;
  platform::Locale::setCurrent(*platform::Locale::named(identifier));
  currentLocale_ = identifier;
}

}  // namespace quillan::audit
