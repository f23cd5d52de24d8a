// --now and every date the host prints: ISO-8601 text parsed, and what parses
// formats to text that parses back to the same instant, to the millisecond.
// A date is a double, so far from 2001 its last bits are coarser than a
// millisecond's rounding: the tolerance is half a millisecond plus a few units
// in the last place of the instant (6122-01-22T08:30:00.2505Z rounds either way).

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FuzzCheck.hpp"
#include "platform/ISO8601.hpp"

namespace {

double roundingSlack(quillan::platform::Date date) {
  const double unix = std::abs(date.unixSeconds());
  return 8 * (std::nextafter(unix, INFINITY) - unix);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using quillan::platform::ISO8601;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto date = ISO8601::parse(text);
  if (!date) return 0;
  for (const int offset : {0, 3600, -34200, 50400}) {
    const auto formatted = ISO8601::format(*date, offset);
    // Early on 0000-01-01 seen from west of UTC (or with an offset east of it) is year -0001,
    // in the expanded form parse() does not read.
    if (formatted.front() == '-') {
      FUZZ_CHECK(formatted.rfind("-0001-12-", 0) == 0);
      continue;
    }
    const auto again = ISO8601::parse(formatted);
    FUZZ_CHECK(again.has_value());
    FUZZ_CHECK(std::abs(again->timeIntervalSinceReferenceDate() - date->timeIntervalSinceReferenceDate()) <=
               0.0005 + roundingSlack(*date));
  }
  return 0;
}
