#pragma once

#include <memory>
#include <vector>

#include "platform/Date.hpp"
#include "widgets/AllNotes.hpp"

namespace quillan::streak {

using Notes = widgets::Notes;

// The notes that can lie on the calendar days of `moments` (read once, near
// those days only). A note without a date stops the process, wherever it is.
Notes notesAround(const std::vector<platform::Date>& moments);

// Whether any note of the journal lies on the calendar day of `moment`, in the
// current calendar and time zone. Reads the journal afresh; a failed fetch
// answers false. A note without a date stops the process.
bool hasNotes(platform::Date moment);

// The same test over notes already fetched, so that one view build can share a
// single fetch between its circles.
bool hasNotes(const Notes& notes, platform::Date moment);

}  // namespace quillan::streak
