#pragma once

#include <string>

#include "render/LayoutBox.hpp"
#include "render/RenderContext.hpp"
#include "render/TextMeasurer.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// The laid-out widget as JSON for golden tests: per box its view name, frame
// [x, y, width, height] and, for texts, the lines; non-default fields only.
//
//   {"size": [338, 158], "background": {...}, "content": {"type": "HStack",
//    "frame": [16, 16, 306, 126], "children": [...]}}
std::string layoutJSON(const views::Node& tree, const RenderContext& context, const TextMeasurer& measurer);
// With the Pango/Inter measurer.
std::string layoutJSON(const views::Node& tree, const RenderContext& context);

}  // namespace quillan::render
