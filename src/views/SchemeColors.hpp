#pragma once

#include "views/Color.hpp"
#include "views/Environment.hpp"

namespace quillan::views {

// The colour rule every widget shares: backgrounds are systemGray6 in dark
// mode and white in light mode; secondary labels systemGray2 and systemGray.
inline Color widgetBackgroundColor(ColorScheme scheme) {
  return scheme == ColorScheme::dark ? Color::systemGray6() : Color::white();
}

inline Color secondaryLabelColor(ColorScheme scheme) {
  return scheme == ColorScheme::dark ? Color::systemGray2() : Color::systemGray();
}

}  // namespace quillan::views
