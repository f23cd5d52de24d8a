#pragma once

// Internal to platform/: the ICU side of Locale, for the calendar and formatters.

#include <unicode/locid.h>

#include <string>

#include "platform/Locale.hpp"

namespace quillan::platform {

struct Locale::Impl {
  std::string identifier;
  icu::Locale locale;
};

}  // namespace quillan::platform
