#pragma once

#include "host/WidgetState.hpp"
#include "views/Environment.hpp"

namespace quillan::host {

// A widget on the host's screen as the page shows it: its state, in the
// family it is placed in.
struct PlacedWidgetView {
  WidgetState state;
  views::WidgetFamily family;
};

}  // namespace quillan::host
