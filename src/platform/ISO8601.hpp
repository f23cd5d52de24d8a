#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::platform {

// ISO-8601 instants as the host reads and prints them.
//   parse:  "2026-11-22T00:00:00+01:00", "2026-11-22T08:30:00.250Z", "...+0100"
//           (an offset or Z is required: a bare local time names no instant).
//   format: the instant in `zone` with its offset, "2026-11-22T00:00:00+01:00";
//           milliseconds are shown only when the instant has any.
class ISO8601 {
 public:
  static std::optional<Date> parse(std::string_view text);
  static std::string format(Date date, const TimeZone& zone);
  // Formats with a fixed offset from UTC in seconds (testable without a zone database).
  static std::string format(Date date, int offsetSeconds);
};

}  // namespace quillan::platform
