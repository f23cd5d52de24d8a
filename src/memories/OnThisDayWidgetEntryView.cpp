#include "memories/OnThisDayWidgetEntryView.hpp"

#include "memories/OTDSmallView.hpp"

namespace quillan::memories {

OnThisDayWidgetEntryView::OnThisDayWidgetEntryView(widgets::SimpleEntry entry, platform::URL deeplinkOTDURL)
    : entry(entry), deeplinkOTDURL(std::move(deeplinkOTDURL)) {}

views::Node OnThisDayWidgetEntryView::body(const views::Environment& environment) const {
  return OTDSmallView(environment).body(environment).widgetURL(deeplinkOTDURL.absoluteString());
}

}  // namespace quillan::memories
