#pragma once

#include <optional>

#include "memories/MonthAndDayTexts.hpp"
#include "platform/Date.hpp"
#include "store/KeepRanges.hpp"

namespace quillan::memories {

// The stored dates (seconds since the reference date) that the memories'
// test for `now` may keep or count as written today: every local day whose
// month-and-day text in `texts` is now's, widened by more than any zone's
// offset either side, and the span around now within which a date can share
// its day. Any other date of the centuries around now has another text and
// another day, so the test turns it down; dates outside those centuries are
// left to the test. None in a calendar whose months are not the Gregorian
// ones: there a text belongs to a day, not to a month and day.
std::optional<store::KeepRanges> matchingDays(platform::Date now, MonthAndDayTexts& texts);

}  // namespace quillan::memories
