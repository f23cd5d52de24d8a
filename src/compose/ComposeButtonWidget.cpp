#include "compose/ComposeButtonWidget.hpp"

#include "compose/ComposeButtonSmallView.hpp"
#include "compose/DeepLinks.hpp"

namespace quillan::compose {

const std::vector<std::string>& composeButtonWidgetPrompts() {
  static const std::vector<std::string> prompts = {
      "What happened today?",        "How's your day going?", "What's on your mind?",
      "This is your personal space", "Write about your day",
  };
  return prompts;
}

ComposeButtonWidgetEntryView::ComposeButtonWidgetEntryView(ComposeButtonEntry entry)
    : entry(entry), deeplinkAddRecordURL(addRecordURL()) {}

views::Node ComposeButtonWidgetEntryView::body(const views::Environment& environment) const {
  return ComposeButtonSmallView(environment, composeButtonWidgetPrompts(), /*isSeperateWidget=*/true)
      .body(environment)
      .widgetURL(deeplinkAddRecordURL.absoluteString());
}

widgets::WidgetConfiguration ComposeButtonWidget::body() const {
  auto configuration = widgets::staticConfiguration<ComposeButtonProvider>(kind, [](ComposeButtonEntry entry) {
    return ComposeButtonWidgetEntryView(entry);
  });
  configuration.displayName = "Compose Button";
  configuration.description =
      "Get your thoughts down quickly. This widget will turn to bright orange if you haven't added any entries "
      "today.";
  configuration.supportedFamilies = {views::WidgetFamily::systemSmall};
  return configuration;
}

}  // namespace quillan::compose
