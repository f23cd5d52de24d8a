#pragma once

#include <cstddef>
#include <optional>
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
  // Today's note count when the caller took it in its own read of the
  // journal; empty, the view runs the today check itself.
  std::optional<std::ptrdiff_t> knownTodayNoteCount;

  ComposeButtonSmallView(const views::Environment& environment, std::vector<std::string> texts, bool isSeperateWidget,
                         std::optional<std::ptrdiff_t> knownTodayNoteCount = std::nullopt);

  // Each evaluation picks a prompt and runs the today check afresh (once).
  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::compose
