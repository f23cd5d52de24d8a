#pragma once

namespace quillan::views {

// A point in a view's own unit square: (0, 0) is the top-leading corner,
// (1, 1) the bottom-trailing one. Gradients name their ends with these.
struct UnitPoint {
  double x = 0;
  double y = 0;

  bool operator==(const UnitPoint&) const = default;

  static constexpr UnitPoint zero() { return {0, 0}; }
  static constexpr UnitPoint center() { return {0.5, 0.5}; }
  static constexpr UnitPoint leading() { return {0, 0.5}; }
  static constexpr UnitPoint trailing() { return {1, 0.5}; }
  static constexpr UnitPoint top() { return {0.5, 0}; }
  static constexpr UnitPoint bottom() { return {0.5, 1}; }
  static constexpr UnitPoint topLeading() { return {0, 0}; }
  static constexpr UnitPoint topTrailing() { return {1, 0}; }
  static constexpr UnitPoint bottomLeading() { return {0, 1}; }
  static constexpr UnitPoint bottomTrailing() { return {1, 1}; }
};

}  // namespace quillan::views
