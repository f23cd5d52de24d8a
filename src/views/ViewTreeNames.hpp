#pragma once

// The names the view tree's JSON gives to unit points and edge sets, shared by
// its encoder and decoder.

#include <array>
#include <string_view>

#include "views/Edge.hpp"
#include "views/UnitPoint.hpp"

namespace quillan::views::names {

struct NamedPoint {
  UnitPoint point;
  std::string_view name;
};

inline constexpr std::array<NamedPoint, 9> kNamedPoints{{{UnitPoint::topLeading(), "topLeading"},
                                                         {UnitPoint::top(), "top"},
                                                         {UnitPoint::topTrailing(), "topTrailing"},
                                                         {UnitPoint::leading(), "leading"},
                                                         {UnitPoint::center(), "center"},
                                                         {UnitPoint::trailing(), "trailing"},
                                                         {UnitPoint::bottomLeading(), "bottomLeading"},
                                                         {UnitPoint::bottom(), "bottom"},
                                                         {UnitPoint::bottomTrailing(), "bottomTrailing"}}};

struct NamedEdgeSet {
  EdgeSet edges;
  std::string_view name;
};

inline const std::array<NamedEdgeSet, 7> kNamedEdgeSets{{{EdgeSet::all(), "all"},
                                                         {EdgeSet::horizontal(), "horizontal"},
                                                         {EdgeSet::vertical(), "vertical"},
                                                         {EdgeSet::top(), "top"},
                                                         {EdgeSet::leading(), "leading"},
                                                         {EdgeSet::bottom(), "bottom"},
                                                         {EdgeSet::trailing(), "trailing"}}};

inline constexpr std::array<Edge, 4> kEdgeOrder{Edge::top, Edge::leading, Edge::bottom, Edge::trailing};

}  // namespace quillan::views::names
