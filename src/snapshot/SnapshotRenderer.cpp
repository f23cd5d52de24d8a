#include "snapshot/SnapshotRenderer.hpp"

#include "hosting/WidgetLookup.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "platform/TimeZone.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::snapshot {

SnapshotRenderer::SnapshotRenderer(const SnapshotConfig& config) : config_(config) {
  platform::FileManager::setGroupContainerDirectory(config.journal);
  // The suite's journal stands for a phone of its own: no legacy journal from
  // elsewhere is paired with it.
  platform::FileManager::setApplicationSupportDirectory(
      platform::FileManager::applicationSupportBeside(config.journal));
  platform::TimeZone::setCurrent(*platform::TimeZone::named(config.timeZone));
  platform::Clock::pin(*platform::ISO8601::parse(config.now));
}

SnapshotPicture SnapshotRenderer::draw(const SnapshotCase& snapshotCase,
                                       const render::DrawingFunctions& drawing) const {
  platform::Locale::setCurrent(*platform::Locale::named(snapshotCase.locale));
  platform::RandomSource::seed(config_.seed);
  const auto& widget = hosting::widgetOfKind(snapshotCase.kind);
  views::Environment environment;
  environment.colorScheme = views::parseColorScheme(snapshotCase.colorScheme);
  environment.renderingMode = views::parseRenderingMode(snapshotCase.renderingMode);
  environment.platformVersion = views::parsePlatformVersion(snapshotCase.platformVersion);
  const auto context = render::makeRenderContext(environment, widget.supportedFamilies.front(),
                                                 hosting::deviceNamed(snapshotCase.device), config_.scale);
  const auto tree = widget.content(hosting::currentEntryDate(widget), context.env);
  return {views::encodeViewTree(tree), drawing.renderToPNGBytes(tree, context)};
}

}  // namespace quillan::snapshot
