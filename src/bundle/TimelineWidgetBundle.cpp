#include "bundle/TimelineWidgetBundle.hpp"

#include "compose/ComposeButtonWidget.hpp"
#include "compose/ComposeLockScreenWidget.hpp"
#include "compose/DeepLinks.hpp"
#include "memories/OTDComposeWidgetEntryView.hpp"
#include "memories/OnThisDayWidgetEntryView.hpp"
#include "streak/StreakWidget.hpp"

namespace quillan::bundle {

using views::WidgetFamily;
using widgets::ComposeLockScreenEntry;
using widgets::ComposeLockScreenProvider;
using widgets::OTDComposeEntry;
using widgets::OTDComposeProvider;
using widgets::Provider;
using widgets::SimpleEntry;
using widgets::staticConfiguration;

WidgetConfiguration OnThisDayWidget::body() const {
  auto configuration = staticConfiguration<Provider>(kind, [](SimpleEntry entry) {
    return memories::OnThisDayWidgetEntryView(entry, compose::onThisDayURL());
  });
  configuration.displayName = "On This Day";
  configuration.description = "Memories on this day from previous years.";
  configuration.supportedFamilies = {WidgetFamily::systemSmall};
  return configuration;
}

WidgetConfiguration OTDComposeWidget::body() const {
  auto configuration = staticConfiguration<OTDComposeProvider>(kind, [](OTDComposeEntry entry) {
    return memories::OTDComposeWidgetEntryView(entry);
  });
  configuration.displayName = "Two in One";
  configuration.description =
      "Memories on this day from previous years + a Compose button to get your thoughts down quickly";
  configuration.supportedFamilies = {WidgetFamily::systemMedium};
  return configuration;
}

WidgetConfiguration ComposeLockScreenWidget::body() const {
  auto configuration = staticConfiguration<ComposeLockScreenProvider>(kind, [](ComposeLockScreenEntry entry) {
    return compose::ComposeLockScreenWidgetEntryView(entry);
  });
  configuration.displayName = "Compose Button";
  configuration.description = "Get your thoughts down quickly";
  configuration.supportedFamilies = {WidgetFamily::accessoryCircular};
  return configuration;
}

const std::vector<WidgetConfiguration>& TimelineWidgetBundle::body() {
  static const std::vector<WidgetConfiguration> widgets = {
      OnThisDayWidget{}.body(),      OTDComposeWidget{}.body(),        compose::ComposeButtonWidget{}.body(),
      streak::StreakWidget{}.body(), ComposeLockScreenWidget{}.body(),
  };
  return widgets;
}

const WidgetConfiguration* TimelineWidgetBundle::widget(std::string_view kind) {
  for (const auto& widget : body()) {
    if (widget.kind == kind) return &widget;
  }
  return nullptr;
}

}  // namespace quillan::bundle
