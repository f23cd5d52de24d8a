#pragma once

#include <cstddef>

namespace quillan::compose {

// How many notes lie on today's calendar day (current calendar and zone, read
// afresh for every note), whatever their time of day. A failed fetch counts 0,
// so the compose button shows its orange, nothing-written face. A note without
// a date stops the process.
std::ptrdiff_t todayNoteCount();

}  // namespace quillan::compose
