#pragma once

#include "platform/URL.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"
#include "widgets/DailyProviders.hpp"

namespace quillan::compose {

// The lock screen's round compose icon: no prompt and no today state, the
// system's tinting colours it.
struct ComposeLockScreenIconView {
  views::ColorScheme colorScheme;  // declared, not used by the drawing

  explicit ComposeLockScreenIconView(const views::Environment& environment);
  views::Node body(const views::Environment& environment) const;
};

struct ComposeLockScreenWidgetEntryView {
  widgets::ComposeLockScreenEntry entry;
  platform::URL deeplinkAddRecordURL;

  explicit ComposeLockScreenWidgetEntryView(widgets::ComposeLockScreenEntry entry);
  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::compose
