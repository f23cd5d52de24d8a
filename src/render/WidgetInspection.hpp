#pragma once

#include <cstddef>
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

// One drawn element of a laid-out widget, as a reviewer looks at it: where it
// sits on the widget (offsets applied) and, for text, what it was asked to
// show against what its lines show.
struct InspectedElement {
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
};

// A widget laid out and, when asked, drawn: the elements that show something
// (text, symbols, shapes), its tap targets, and its picture at the context's scale.
struct WidgetInspection {
  Size size;
  bool rightToLeft = false;
  std::vector<InspectedElement> elements;
  std::vector<HitRegion> hitRegions;
  std::optional<PixelImage> picture;
};

// Lays out `tree` once and answers every element of it; draws the picture
// from that same layout when `withPicture`.
WidgetInspection inspectWidget(const views::Node& tree, const RenderContext& context, bool withPicture);

}  // namespace quillan::render
