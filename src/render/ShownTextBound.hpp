#pragma once

#include <cstddef>
#include <optional>

namespace quillan::render {

// The largest widget of any device profile (the large family of the biggest
// phones), in points. No text shows beyond it, whatever it is proposed.
inline constexpr double kLargestWidgetWidth = 364;
inline constexpr double kLargestWidgetHeight = 382;

// The narrowest advance a character is assumed to have, per point of font
// size. Inter's narrowest glyphs ("i", "l", ".") advance about a quarter of an
// em, and a seven-character family emoji about a seventh; a sixteenth leaves
// room for tight tracking. Only zero-width characters and heaps of combining
// marks fall below it, and a text made of them is cut short (see below).
inline constexpr double kMinAdvancePerPoint = 1.0 / 16;

// Whatever the limits, no text is laid out past this many characters: the
// largest widget holds some 30 lines of 60 characters at the smallest text
// style (11 pt), so this is eight times what any widget can show.
inline constexpr std::size_t kMaxLaidOutCodePoints = 16 * 1024;

struct TextLimits {
  std::optional<double> width;   // nothing: one line per paragraph (ideal size)
  std::optional<double> height;  // only whole lines that fit, at least one
  std::optional<int> lineLimit;
};

// How much of a text a layout for `limits` can ever show, so that a note of a
// megabyte costs no more to lay out than one of a few hundred characters:
//
// - lines: the line limit, the whole lines the height holds, and the lines of
//   the tallest widget, whichever is least (at least one);
// - lineCodePoints: the most characters one line holds, the width (or the
//   widest widget's) over the narrowest advance of the text's smallest font;
//   no search for a line break looks further;
// - codePoints: a line more than `lines` of those, at most
//   kMaxLaidOutCodePoints. The text is laid out as if it ended there (cut at a
//   grapheme boundary) and then ends in "…".
//
// Within the assumed advances every line shown is the one the whole text
// would show; only a text narrower than they allow is cut earlier.
struct ShownTextBound {
  std::size_t lines = 1;
  std::size_t lineCodePoints = 1;
  std::size_t codePoints = 1;
};

ShownTextBound shownTextBound(const TextLimits& limits, double lineHeight, double smallestFontSize);

}  // namespace quillan::render
