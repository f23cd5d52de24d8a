#pragma once

#include <memory>
#include <vector>

#include "platform/Date.hpp"
#include "store/Note.hpp"

namespace quillan::streak {

using Notes = std::vector<std::shared_ptr<store::Note>>;

// Whether any note of the journal lies on the calendar day of `moment`, in the
// current calendar and time zone. Reads the whole journal afresh; a failed
// fetch answers false. A note without a date stops the process.
bool hasNotes(platform::Date moment);

// The same test over notes already fetched, so that one view build can share a
// single fetch between its circles.
bool hasNotes(const Notes& notes, platform::Date moment);

}  // namespace quillan::streak
