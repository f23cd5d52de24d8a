#pragma once

#include <string>
#include <vector>

#include "platform/URL.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"
#include "widgets/DailyProviders.hpp"
#include "widgets/WidgetConfiguration.hpp"

namespace quillan::compose {

struct ComposeButtonEntry {
  platform::Date date;
};

// One entry a day like every widget of the bundle; the grey-or-orange state is
// not in the entry but worked out each time the view is drawn.
using ComposeButtonProvider = widgets::DailyProvider<ComposeButtonEntry>;

// The stand-alone compose widget's own copy of the writing prompts. The medium
// on-this-day widget keeps a separate copy so that either can change alone.
const std::vector<std::string>& composeButtonWidgetPrompts();

struct ComposeButtonWidgetEntryView {
  ComposeButtonEntry entry;
  platform::URL deeplinkAddRecordURL;

  explicit ComposeButtonWidgetEntryView(ComposeButtonEntry entry);
  views::Node body(const views::Environment& environment) const;
};

// "Compose Button": one big compose button on the home screen, small family only.
struct ComposeButtonWidget {
  std::string kind = "ComposeButtonWidget";
  widgets::WidgetConfiguration body() const;
};

}  // namespace quillan::compose
