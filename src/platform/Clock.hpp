#pragma once

#include <optional>

#include "platform/Date.hpp"

namespace quillan::platform {

// The process clock. Every place that needs "now" calls Clock::now() afresh, as
// the phone's code calls Date(). The host may pin it (--now) so that a whole
// evaluation sees one instant; unpinned it reads the system time.
class Clock {
 public:
  static Date now();
  static void pin(Date date);
  static void unpin();
  static std::optional<Date> pinned();
};

}  // namespace quillan::platform
