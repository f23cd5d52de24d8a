#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "memories/MemorySelection.hpp"
#include "platform/Date.hpp"

namespace quillan::memories {

// What one render of a memory view needs, from one read of the journal. It
// answers exactly as the free functions of MemorySelection and MemorySummary
// (which stay the reference they are tested against) but fetches once instead
// of at every question, and formats a note's month and day once per local day
// rather than once per note: a journal of 100,000 notes draws in milliseconds.
// The same read counts today's notes for the compose button beside the memories.
class MemorySnapshot {
 public:
  // A note without a date stops the process, as fetchMemories() does.
  static MemorySnapshot take();

  const NoteList& memories() const { return memories_; }
  const std::vector<MemoryGroup>& groups() const { return groups_; }

  bool empty() const { return memories_.empty(); }
  // Stops the process when there are no memories, as representativeMemory() does.
  std::shared_ptr<store::Note> representativeMemory() const;
  std::ptrdiff_t moreCount() const { return static_cast<std::ptrdiff_t>(memories_.size()) - 1; }
  platform::Date headerDate() const;
  // What compose::todayNoteCount() answers, counted in the same read.
  std::ptrdiff_t todayNoteCount() const { return todayNoteCount_; }

 private:
  NoteList memories_;
  std::vector<MemoryGroup> groups_;
  std::ptrdiff_t todayNoteCount_ = 0;
};

}  // namespace quillan::memories
