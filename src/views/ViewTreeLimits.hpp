#pragma once

#include <cstddef>

// What a view tree read from JSON may hold. A widget's tree is a few dozen
// levels deep and measures a few hundred points; these bounds leave wide room
// for any real tree while keeping what reaches the layout engine, Cairo and
// Pango finite and sane. docs/view-tree.md lists them for hosts.
namespace quillan::views::limits {

// Views nest at most this deep, each modifier counting as a level of its own
// (the host wraps the view in one node per modifier, and lays out, draws and
// frees its trees recursively). The widgets' own trees reach 21.
inline constexpr std::size_t kMaxDepth = 64;

// Font sizes in points. A line of a larger font is taller than any widget.
inline constexpr double kMinFontSize = 1;
inline constexpr double kMaxFontSize = 400;

// Any length, offset or coordinate, in points: some 25 times the largest
// widget. Sizes (frames, a spacer's minimum, stroke widths, dashes, insets)
// are also at least 0.
inline constexpr double kMaxLength = 10'000;

// A line limit is 1 or more and at most this many lines, more than any widget
// can show at the smallest font.
inline constexpr int kMaxLineLimit = 1'000;

}  // namespace quillan::views::limits
