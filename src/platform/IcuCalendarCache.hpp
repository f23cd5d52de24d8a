#pragma once

// Internal to platform/: ICU calendars for a locale and zone.

#include <unicode/calendar.h>

#include <memory>

#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::platform {

// A fresh ICU calendar of the locale's calendar system in `zone`, lenient, with
// repeated wall times resolved to their first occurrence and skipped ones read
// with the offset before the gap (00:30 in a 00:00->01:00 gap is 01:30), as
// calendar arithmetic on the phone does. Built by cloning a cached prototype: building from locale
// data costs far more than a clone, and the widgets ask once per note.
// Empty only if ICU cannot build the calendar at all.
std::unique_ptr<icu::Calendar> makeIcuCalendar(const Locale& locale, const TimeZone& zone);

}  // namespace quillan::platform
