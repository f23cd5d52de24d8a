#pragma once

#include "platform/URL.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The medium memories-and-compose widget: the memory panel, which opens the
// on-this-day screen, beside the embedded compose button, which opens a new entry.
struct OTDComposeMediumView {
  views::ColorScheme colorScheme;
  platform::URL deeplinkOTDURL;
  platform::URL deeplinkAddRecordURL;

  explicit OTDComposeMediumView(const views::Environment& environment);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
