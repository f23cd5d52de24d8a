#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "render/Geometry.hpp"
#include "render/HitTest.hpp"
#include "render/PixelImage.hpp"
#include "render/RenderContext.hpp"
#include "render/Rgba.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// Where a text's glyphs put ink, drawn on their own: coverage 0-255 per pixel
// of the rectangle (in pixels of the picture's scale, from the widget's
// top-left corner; it may reach past the widget, which the mask would hide).
struct InkMask {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> coverage;  // row by row

  std::uint8_t at(int x, int y) const {
    if (x < left || y < top || x >= left + width || y >= top + height) return 0;
    return coverage[static_cast<std::size_t>(y - top) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x - left)];
  }
};

// One drawn element of a laid-out widget, as a reviewer looks at it: where it
// sits on the widget (offsets applied) and, for text, what it was asked to
// show against what its lines show.
struct ReviewedElement {
  std::string path;  // node names from the widget down, "content/VStack/Text[1]"
  std::string type;
  Rect frame;
  bool isText = false;
  std::string text;       // the whole content
  std::string shownText;  // the laid-out lines, an ellipsis included, joined by newlines
  bool truncated = false;
  std::size_t missingGlyphs = 0;
  double fontSize = 0;
  bool bold = false;
  Rgba color;  // the text's colour as the rendering mode paints it, group opacity applied
  // The view hides the text itself (a clear colour, opacity 0), as a weekday
  // under a check mark: there is nothing a reader should see.
  bool hidden = false;
  std::optional<InkMask> ink;  // shown texts, when the review draws
};

// A widget laid out and, when asked, drawn: the elements that show something
// (text, symbols, shapes), its tap targets, and its picture at the context's scale.
struct WidgetReview {
  Size size;
  bool rightToLeft = false;
  // The mask that clips everything drawn: a circle, or a rectangle with these corners.
  bool circularMask = false;
  double cornerRadius = 0;
  double scale = 1;  // pixels per point of the picture and the ink masks
  std::vector<ReviewedElement> elements;
  std::vector<HitRegion> hitRegions;
  std::optional<PixelImage> picture;
};

// Lays out `tree` once and answers every element of it; draws the picture
// from that same layout when `withPicture`.
WidgetReview reviewWidget(const views::Node& tree, const RenderContext& context, bool withPicture);

}  // namespace quillan::render
