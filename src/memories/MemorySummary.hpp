#pragma once

// The values the memory views draw, each derived afresh from the selection
// whenever a view asks (one render asks several times).

#include <cstddef>
#include <memory>

#include "platform/Date.hpp"
#include "store/Note.hpp"

namespace quillan::memories {

// The first note of the newest group. Asked for only when there are memories;
// without any the process stops.
std::shared_ptr<store::Note> representativeMemory();

// Every memory but the one drawn, over all earlier years (-1 with none).
std::ptrdiff_t moreCount();

// The representative memory's date; now when there is none or it has no date.
platform::Date headerDate();

}  // namespace quillan::memories
