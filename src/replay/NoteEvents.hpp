#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Date.hpp"

namespace quillan::replay {

// The user writes a note at `at`: dated `noteDate`, saying `text`.
struct NoteEvent {
  platform::Date at;
  platform::Date noteDate;
  std::string text;
};

// A replay adds a handful of notes; these bound what one events file may ask,
// so a stray file cannot make the replay write a journal without end.
inline constexpr std::uintmax_t kNoteEventsFileLimit = 1024 * 1024;
inline constexpr std::size_t kMaxNoteEvents = 1000;
inline constexpr std::size_t kMaxNoteTextBytes = 64 * 1024;

// Reads `[{"at": ISO-8601, "note": {"date": ISO-8601, "text": "..."}}]` from
// `path`, in time order (events at one instant keep the file's order). Every
// `at` must lie from `from` to `to`. Throws UsageError naming --events, the
// event's index and what was wrong; unknown keys are refused, not ignored.
std::vector<NoteEvent> readNoteEvents(const std::filesystem::path& path, platform::Date from, platform::Date to);

}  // namespace quillan::replay
