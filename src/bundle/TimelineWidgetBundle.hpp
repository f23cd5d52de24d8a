#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "widgets/WidgetConfiguration.hpp"

namespace quillan::bundle {

using widgets::WidgetConfiguration;

// The widgets declared here, each a value whose one field is its kind; the
// compose button and the streak widget are declared with their features.
struct OnThisDayWidget {
  std::string kind = "OnThisDayWidget";
  WidgetConfiguration body() const;
};
struct OTDComposeWidget {
  std::string kind = "OTDComposeWidget";
  WidgetConfiguration body() const;
};
// Its kind differs from its type's name, deliberately.
struct ComposeLockScreenWidget {
  std::string kind = "ComposeButtonLockScreen";
  WidgetConfiguration body() const;
};

// What the extension hands the host at start-up: the five widgets in the order
// the host's gallery lists them.
struct TimelineWidgetBundle {
  static const std::vector<WidgetConfiguration>& body();
  // The widget of `kind`, or null.
  static const WidgetConfiguration* widget(std::string_view kind);
};

}  // namespace quillan::bundle
