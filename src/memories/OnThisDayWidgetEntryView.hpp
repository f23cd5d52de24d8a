#pragma once

#include "platform/URL.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"
#include "widgets/DailyProviders.hpp"

namespace quillan::memories {

// The small on-this-day widget as the host draws an entry: the whole widget
// is one tap target opening `deeplinkOTDURL`. The entry's date is not read;
// the view reads the journal when drawn.
struct OnThisDayWidgetEntryView {
  widgets::SimpleEntry entry;
  platform::URL deeplinkOTDURL;

  OnThisDayWidgetEntryView(widgets::SimpleEntry entry, platform::URL deeplinkOTDURL);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
