#pragma once

#include <algorithm>
#include <optional>

#include "views/Edge.hpp"

namespace quillan::render {

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double maxX() const { return x + width; }
  double maxY() const { return y + height; }
  Point center() const { return {x + width / 2, y + height / 2}; }
  bool contains(Point p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
  Rect offsetBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
  Rect insetBy(double d) const { return {x + d, y + d, std::max(0.0, width - 2 * d), std::max(0.0, height - 2 * d)}; }
  bool operator==(const Rect&) const = default;
};

// Per-edge lengths, as views state them.
using EdgeInsets = views::EdgeInsets;

// A size proposal: per axis a number, or nothing for "your ideal size".
struct ProposedSize {
  std::optional<double> width;
  std::optional<double> height;

  static ProposedSize unspecified() { return {}; }
  static ProposedSize of(Size s) { return {s.width, s.height}; }
  bool operator==(const ProposedSize&) const = default;
};

enum class Axis { horizontal, vertical };

// Text baselines a row can line its children up on instead of a fraction.
enum class Baseline { none, first, last };

// Where a child sits inside a larger box, per axis: 0 leading/top, 0.5 centre,
// 1 trailing/bottom. A baseline, when set, replaces the vertical fraction.
struct Alignment {
  double horizontal = 0.5;
  double vertical = 0.5;
  Baseline baseline = Baseline::none;
  static Alignment center() { return {}; }
  bool operator==(const Alignment&) const = default;
};

}  // namespace quillan::render
