#pragma once

#include <cstddef>
#include <vector>

#include "platform/Date.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::platform {

// A zone's offsets, asked of ICU once per stretch between two of its
// transitions and looked up afterwards, for loops that need the offset of
// thousands of dates: a journal of years touches a few dozen stretches.
// Answers exactly as zone.secondsFromGMT(date) does, dates right at a
// transition and between milliseconds included.
class ZoneOffsetTable {
 public:
  explicit ZoneOffsetTable(TimeZone zone);

  int secondsFromGMT(Date date);

 private:
  // Half-open [startMillis, endMillis) in Unix milliseconds, ICU's own unit.
  struct Stretch {
    double startMillis;
    double endMillis;
    int offsetSeconds;
    bool holds(double millis) const { return startMillis <= millis && millis < endMillis; }
  };

  const Stretch* find(double millis);
  Stretch stretchAround(Date date) const;

  TimeZone zone_;
  std::vector<Stretch> stretches_;  // sorted and disjoint
  std::size_t lastUsed_ = 0;
};

}  // namespace quillan::platform
