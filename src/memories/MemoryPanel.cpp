#include "memories/MemoryPanel.hpp"

#include "memories/MoreNotesCountWidgetItem.hpp"
#include "memories/NoMemoriesWidgetText.hpp"
#include "memories/OTDWidgetRow.hpp"
#include "views/Builders.hpp"

namespace quillan::memories {

using namespace views;

Node memoryRowOrEmptyState(const Environment& environment, const MemorySnapshot& memories) {
  // Only one memory is drawn as a row, however many there are.
  return memories.empty() ? NoMemoriesWidgetText(environment).body(environment)
                          : OTDWidgetRow(environment, memories.representativeMemory()).body(environment);
}

std::optional<Node> moreMemoriesPill(const Environment& environment, const MemorySnapshot& memories) {
  return when(memories.moreCount() >= 1,
              hstack({
                  spacer(2.5),
                  MoreNotesCountWidgetItem(environment, memories.moreCount()).body(environment),
                  spacer(2.5),
              }));
}

}  // namespace quillan::memories
