#pragma once

#include <array>

#include "views/EnumNames.hpp"

namespace quillan::views {

// A VStack lines its children up along this.
enum class HorizontalAlignment { leading, center, trailing };

constexpr auto enumNames(HorizontalAlignment) {
  using enum HorizontalAlignment;
  return std::array<EnumName<HorizontalAlignment>, 3>{
      {{leading, "leading"}, {center, "center"}, {trailing, "trailing"}}};
}

// An HStack lines its children up along this; the baselines are those of the
// children's first or last line of text.
enum class VerticalAlignment { top, center, bottom, firstTextBaseline, lastTextBaseline };

constexpr auto enumNames(VerticalAlignment) {
  using enum VerticalAlignment;
  return std::array<EnumName<VerticalAlignment>, 5>{{{top, "top"},
                                                     {center, "center"},
                                                     {bottom, "bottom"},
                                                     {firstTextBaseline, "firstTextBaseline"},
                                                     {lastTextBaseline, "lastTextBaseline"}}};
}

// Two-dimensional alignment: ZStack, frames, backgrounds, overlays.
enum class Alignment { center, leading, trailing, top, bottom, topLeading, topTrailing, bottomLeading, bottomTrailing };

constexpr auto enumNames(Alignment) {
  using enum Alignment;
  return std::array<EnumName<Alignment>, 9>{{{center, "center"},
                                             {leading, "leading"},
                                             {trailing, "trailing"},
                                             {top, "top"},
                                             {bottom, "bottom"},
                                             {topLeading, "topLeading"},
                                             {topTrailing, "topTrailing"},
                                             {bottomLeading, "bottomLeading"},
                                             {bottomTrailing, "bottomTrailing"}}};
}

constexpr HorizontalAlignment horizontal(Alignment alignment) {
  switch (alignment) {
    case Alignment::leading:
    case Alignment::topLeading:
    case Alignment::bottomLeading: return HorizontalAlignment::leading;
    case Alignment::trailing:
    case Alignment::topTrailing:
    case Alignment::bottomTrailing: return HorizontalAlignment::trailing;
    default: return HorizontalAlignment::center;
  }
}

constexpr VerticalAlignment vertical(Alignment alignment) {
  switch (alignment) {
    case Alignment::top:
    case Alignment::topLeading:
    case Alignment::topTrailing: return VerticalAlignment::top;
    case Alignment::bottom:
    case Alignment::bottomLeading:
    case Alignment::bottomTrailing: return VerticalAlignment::bottom;
    default: return VerticalAlignment::center;
  }
}

}  // namespace quillan::views
