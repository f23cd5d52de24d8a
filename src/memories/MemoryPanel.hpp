#pragma once

#include <optional>

#include "memories/MemorySnapshot.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The two parts under the title that the small and the medium memory panels
// share (each builds its own title, whose size differs).

// The representative memory's row, or the empty state when there is none.
views::Node memoryRowOrEmptyState(const views::Environment& environment, const MemorySnapshot& memories);

// The "N more" pill, centred between two spacers, when other memories exist.
std::optional<views::Node> moreMemoriesPill(const views::Environment& environment, const MemorySnapshot& memories);

}  // namespace quillan::memories
