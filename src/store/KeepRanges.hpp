#pragma once

#include <cstddef>
#include <vector>

namespace quillan::store {

// Where a row test on a numeric column can answer yes. A number inside the
// span but in none of the ranges is one the test is vouched to answer no to,
// with no other effect, so a scan passes over it without asking; everything
// else (numbers outside the span, NaN, NULL, text, blobs) is still asked. The
// test alone decides what is kept: the ranges only spare it the rows it would
// turn down anyway, and may be wider than what it keeps.
class KeepRanges {
 public:
  struct Range {
    double lower;  // inclusive
    double upper;  // exclusive
  };

  // `ranges` in any order; overlapping and touching ones are joined.
  KeepRanges(Range span, std::vector<Range> ranges);

  bool mayKeep(double number) const;
  // The same, looked for first where the last number was found: `hint`
  // (0 to begin with) is kept by the caller between calls. A scan in
  // roughly date order then finds most numbers with two comparisons.
  bool mayKeep(double number, std::size_t& hint) const;

 private:
  Range span_;
  // lower, upper, lower, upper, ... ascending: a number lies in a range when
  // an odd count of bounds is at or below it.
  std::vector<double> bounds_;
};

}  // namespace quillan::store
