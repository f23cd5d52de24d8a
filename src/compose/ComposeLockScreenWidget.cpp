#include "compose/ComposeLockScreenWidget.hpp"

#include "compose/DeepLinks.hpp"
#include "views/Builders.hpp"

namespace quillan::compose {

using namespace views;

ComposeLockScreenIconView::ComposeLockScreenIconView(const Environment& environment)
    : colorScheme(environment.colorScheme) {}

Node ComposeLockScreenIconView::body(const Environment& environment) const {
  Node icon = image("square.and.pencil.circle.fill")
                  .resizable(EdgeInsets{}, ResizingMode::stretch)
                  .foregroundStyle(HierarchicalShapeStyle::primary, HierarchicalShapeStyle::secondary)
                  .imageScale(ImageScale::large)
                  .font(Font::title());
  if (environment.platformVersion.atLeast(17, 0)) {
    return anyView(std::move(icon).containerBackground(ContainerBackgroundPlacement::widget, Alignment::center,
                                                       color(Color::clear())));
  }
  return anyView(std::move(icon));
}

ComposeLockScreenWidgetEntryView::ComposeLockScreenWidgetEntryView(widgets::ComposeLockScreenEntry entry)
    : entry(entry), deeplinkAddRecordURL(addRecordURL()) {}

Node ComposeLockScreenWidgetEntryView::body(const Environment& environment) const {
  return ComposeLockScreenIconView(environment).body(environment).widgetURL(deeplinkAddRecordURL.absoluteString());
}

}  // namespace quillan::compose
