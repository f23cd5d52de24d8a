#pragma once

#include <cstddef>

#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The pill that counts the memories not drawn ("3 more"). Callers show it
// only for a count of at least 1.
struct MoreNotesCountWidgetItem {
  views::ColorScheme colorScheme;
  std::ptrdiff_t count;

  MoreNotesCountWidgetItem(const views::Environment& environment, std::ptrdiff_t count);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
