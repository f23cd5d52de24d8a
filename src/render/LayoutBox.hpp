#pragma once

#include <optional>
#include <vector>

#include "render/Geometry.hpp"
#include "render/LayoutNode.hpp"
#include "render/TextLayout.hpp"

namespace quillan::render {

// The layout engine's output for one node: its frame in widget coordinates
// (snapped to the pixel grid), its laid-out text lines, and its children.
struct LayoutBox {
  const LayoutNode* node = nullptr;
  Rect frame;
  std::optional<TextLayout> text;
  std::vector<LayoutBox> children;
};

}  // namespace quillan::render
