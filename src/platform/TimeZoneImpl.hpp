#pragma once

// Internal to platform/: the ICU side of TimeZone, for the calendar and formatters.

#include <unicode/timezone.h>

#include <memory>
#include <string>

#include "platform/TimeZone.hpp"

namespace quillan::platform {

struct TimeZone::Impl {
  std::string identifier;
  // Shared read-only; anything that needs to adjust a zone clones it first.
  std::unique_ptr<const icu::TimeZone> zone;
};

}  // namespace quillan::platform
