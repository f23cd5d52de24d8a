#pragma once

#include <array>
#include <cstdint>

#include "views/EnumNames.hpp"

namespace quillan::views {

// Layout-direction-relative edges, as padding and safe areas name them.
enum class Edge : std::uint8_t { top = 1, leading = 2, bottom = 4, trailing = 8 };

constexpr auto enumNames(Edge) {
  using enum Edge;
  return std::array<EnumName<Edge>, 4>{
      {{top, "top"}, {leading, "leading"}, {bottom, "bottom"}, {trailing, "trailing"}}};
}

// A set of edges. The named sets are the ones views spell out: `.horizontal`,
// `.all`, a single edge.
class EdgeSet {
 public:
  constexpr EdgeSet() = default;
  constexpr EdgeSet(Edge edge) : bits_(static_cast<std::uint8_t>(edge)) {}  // NOLINT: reads like `.top`

  static constexpr EdgeSet none() { return EdgeSet(); }
  static constexpr EdgeSet all() { return fromBits(15); }
  static constexpr EdgeSet horizontal() { return EdgeSet(Edge::leading) | Edge::trailing; }
  static constexpr EdgeSet vertical() { return EdgeSet(Edge::top) | Edge::bottom; }
  static constexpr EdgeSet top() { return Edge::top; }
  static constexpr EdgeSet leading() { return Edge::leading; }
  static constexpr EdgeSet bottom() { return Edge::bottom; }
  static constexpr EdgeSet trailing() { return Edge::trailing; }
  static constexpr EdgeSet fromBits(std::uint8_t bits) {
    EdgeSet set;
    set.bits_ = bits & 15;
    return set;
  }

  constexpr bool contains(Edge edge) const { return (bits_ & static_cast<std::uint8_t>(edge)) != 0; }
  constexpr bool empty() const { return bits_ == 0; }
  constexpr std::uint8_t bits() const { return bits_; }

  friend constexpr EdgeSet operator|(EdgeSet a, EdgeSet b) { return fromBits(a.bits_ | b.bits_); }
  friend constexpr bool operator==(EdgeSet, EdgeSet) = default;

 private:
  std::uint8_t bits_ = 0;
};

// Per-edge lengths (cap insets of a resizable image).
struct EdgeInsets {
  double top = 0;
  double leading = 0;
  double bottom = 0;
  double trailing = 0;

  bool operator==(const EdgeInsets&) const = default;
};

}  // namespace quillan::views
