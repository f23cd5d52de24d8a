#pragma once

#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The small on-this-day widget's content: the header date, the title, the
// newest memory (or the empty state) and a pill counting the rest.
struct OTDSmallView {
  views::ColorScheme colorScheme;

  explicit OTDSmallView(const views::Environment& environment);

  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::memories
