#pragma once

#include <string>
#include <vector>

#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::compose {

// The compose button: one writing prompt in heavy white type and a pencil, on a
// gradient that is grey when something was written today and orange when not.
// Stand-alone (`isSeperateWidget`, the whole compose widget) or embedded in the
// on-this-day medium widget. It attaches no link; its callers do.
struct ComposeButtonSmallView {
  views::ColorScheme colorScheme;
  views::WidgetRenderingMode widgetRenderingMode;
  std::vector<std::string> texts;
  bool isSeperateWidget;

  ComposeButtonSmallView(const views::Environment& environment, std::vector<std::string> texts,
                         bool isSeperateWidget);

  // Each evaluation picks a prompt and runs the today check afresh.
  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::compose
