#include "memories/MemorySummary.hpp"

#include <optional>
#include <vector>

#include "memories/MemorySelection.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"

namespace quillan::memories {
namespace {

template <typename Value>
std::optional<Value> first(const std::vector<Value>& values) {
  if (values.empty()) return std::nullopt;
  return values.front();
}

}  // namespace

std::shared_ptr<store::Note> representativeMemory() {
  const auto newestGroup = platform::unwrap(first(memoryGroups()), kMemorySelectionSource);
  return platform::unwrap(first(newestGroup), kMemorySelectionSource);
}

std::ptrdiff_t moreCount() { return static_cast<std::ptrdiff_t>(fetchMemories().size()) - 1; }

platform::Date headerDate() {
  // Two reads, as the header has always made them: one for the emptiness
  // test and one for the date.
  if (memoryGroups().empty()) return platform::Clock::now();
  const auto newestGroup = first(memoryGroups());
  if (!newestGroup) return platform::Clock::now();
  return newestGroup->front()->date().value_or(platform::Clock::now());
}

}  // namespace quillan::memories
