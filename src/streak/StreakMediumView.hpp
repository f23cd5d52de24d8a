#pragma once

#include <cstdint>
#include <vector>

#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::streak {

// The face of the streak widget: the title over a row of day circles, the
// past days of `pastDateRange` in order and then today, each ticked when the
// journal has a note on that day.
struct StreakMediumView {
  views::ColorScheme colorScheme;
  std::vector<std::int64_t> pastDateRange;

  StreakMediumView(const views::Environment& environment, std::vector<std::int64_t> pastDateRange);

  // Reads the clock and the journal afresh at every evaluation.
  views::Node body(const views::Environment& environment) const;
};

}  // namespace quillan::streak
