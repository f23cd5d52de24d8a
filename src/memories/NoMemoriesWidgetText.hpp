#pragma once

#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The empty state of both memory panels; the same in either colour scheme.
struct NoMemoriesWidgetText {
  views::ColorScheme colorScheme;

  explicit NoMemoriesWidgetText(const views::Environment& environment);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
