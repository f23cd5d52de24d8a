#include "memories/OTDComposeWidgetEntryView.hpp"

#include "memories/OTDComposeMediumView.hpp"

namespace quillan::memories {

OTDComposeWidgetEntryView::OTDComposeWidgetEntryView(widgets::OTDComposeEntry entry) : entry(entry) {}

views::Node OTDComposeWidgetEntryView::body(const views::Environment& environment) const {
  return OTDComposeMediumView(environment).body(environment);
}

}  // namespace quillan::memories
