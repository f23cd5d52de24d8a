#pragma once

#include "views/Color.hpp"
#include "views/Environment.hpp"

namespace quillan::memories {

// The extension's shared colour rule: widget backgrounds and secondary labels.
inline views::Color widgetBackgroundColor(views::ColorScheme scheme) {
  return scheme == views::ColorScheme::dark ? views::Color::systemGray6() : views::Color::white();
}

inline views::Color secondaryLabelColor(views::ColorScheme scheme) {
  return scheme == views::ColorScheme::dark ? views::Color::systemGray2() : views::Color::systemGray();
}

}  // namespace quillan::memories
