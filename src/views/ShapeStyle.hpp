#pragma once

#include <array>
#include <variant>

#include "views/Color.hpp"
#include "views/EnumNames.hpp"
#include "views/LinearGradient.hpp"

namespace quillan::views {

// A level of the current foreground style (`HierarchicalShapeStyle.primary`,
// `.secondary`, ...): not a colour of its own, but the foreground at a lesser
// prominence, resolved only when drawn.
enum class HierarchicalShapeStyle { primary, secondary, tertiary, quaternary };

constexpr auto enumNames(HierarchicalShapeStyle) {
  using enum HierarchicalShapeStyle;
  return std::array<EnumName<HierarchicalShapeStyle>, 4>{
      {{primary, "primary"}, {secondary, "secondary"}, {tertiary, "tertiary"}, {quaternary, "quaternary"}}};
}

// The opacity a level applies on top of a custom foreground colour.
constexpr double levelOpacity(HierarchicalShapeStyle level) {
  switch (level) {
    case HierarchicalShapeStyle::primary: return 1.0;
    case HierarchicalShapeStyle::secondary: return 0.5;
    case HierarchicalShapeStyle::tertiary: return 0.25;
    case HierarchicalShapeStyle::quaternary: return 0.18;
  }
  return 1.0;
}

// What fills or strokes a shape, or styles the foreground.
using ShapeStyle = std::variant<Color, LinearGradient, HierarchicalShapeStyle>;

}  // namespace quillan::views
