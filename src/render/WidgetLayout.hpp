#pragma once

#include <memory>
#include <optional>
#include <string>

#include "render/LayoutBox.hpp"
#include "render/RenderContext.hpp"
#include "render/TextMeasurer.hpp"
#include "render/ViewAdapter.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// A widget laid out in its container: the family's size, the content inside
// the content margins, the background under it edge to edge, and the mask.
// Owns the layout nodes its boxes point into.
struct WidgetLayout {
  Size size;
  bool circularMask = false;
  double cornerRadius = 0;
  bool homeScreenFamily = true;
  // Laid out under a right-to-left layout direction: every frame is mirrored
  // across the widget, so offsets, gradients and text lines mirror too.
  bool rightToLeft = false;
  AdaptedWidget adapted;
  std::optional<LayoutNode> defaultBackground;
  std::optional<LayoutBox> background;
  LayoutBox content;

  WidgetLayout() = default;
  WidgetLayout(const WidgetLayout&) = delete;
  WidgetLayout& operator=(const WidgetLayout&) = delete;
};

// Platform 17 and later: content margins (16 on the home screen, 0 on the lock
// screen) and the container background under them; before 17: no margins and
// the view's own background. A home-screen family without a background of its
// own gets systemBackground. Under a right-to-left layout direction the laid-out
// frames are mirrored across the widget, as the phone flips each view's x
// within its parent.
std::unique_ptr<WidgetLayout> layoutWidget(const views::Node& root, const RenderContext& context,
                                           const TextMeasurer& measurer);

bool isHomeScreenFamily(views::WidgetFamily family);

}  // namespace quillan::render
