#pragma once

#include "views/Environment.hpp"
#include "views/Node.hpp"
#include "widgets/DailyProviders.hpp"

namespace quillan::memories {

// The medium memories-and-compose widget as the host draws an entry. No
// whole-widget link: the view's two halves carry their own.
struct OTDComposeWidgetEntryView {
  widgets::OTDComposeEntry entry;

  explicit OTDComposeWidgetEntryView(widgets::OTDComposeEntry entry);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
