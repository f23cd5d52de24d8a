#pragma once

#include <optional>
#include <string>

#include "render/LayoutNode.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// A view tree turned into layout nodes with fonts and colours resolved for one
// colour scheme. The widget-level declarations are lifted out of the tree,
// because the host, not the content, draws and answers them.
struct AdaptedWidget {
  LayoutNode content;
  std::optional<LayoutNode> containerBackground;
  std::optional<std::string> widgetURL;
};

// Inherited settings (font, foreground, line limit, image scale, privacy)
// flow down as the toolkit's environment does: the modifier nearest a view wins.
AdaptedWidget adaptViewTree(const views::Node& root, const views::Environment& environment);

}  // namespace quillan::render
