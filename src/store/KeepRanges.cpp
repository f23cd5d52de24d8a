#include "store/KeepRanges.hpp"

#include <algorithm>

namespace quillan::store {

KeepRanges::KeepRanges(Range span, std::vector<Range> ranges) : span_(span) {
  std::erase_if(ranges, [](const Range& range) { return !(range.lower < range.upper); });
  std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.lower < b.lower; });
  for (const auto& range : ranges) {
    if (!bounds_.empty() && range.lower <= bounds_.back()) {
      bounds_.back() = std::max(bounds_.back(), range.upper);
    } else {
      bounds_.push_back(range.lower);
      bounds_.push_back(range.upper);
    }
  }
}

bool KeepRanges::mayKeep(double number) const {
  std::size_t hint = 0;
  return mayKeep(number, hint);
}

bool KeepRanges::mayKeep(double number, std::size_t& hint) const {
  // Written so that NaN, outside every comparison, is asked.
  if (!(number >= span_.lower && number < span_.upper)) return true;
  // `hint` counts the bounds at or below the last number.
  const bool sameGap = hint <= bounds_.size() && (hint == 0 || bounds_[hint - 1] <= number) &&
                       (hint == bounds_.size() || number < bounds_[hint]);
  if (!sameGap) hint = std::upper_bound(bounds_.begin(), bounds_.end(), number) - bounds_.begin();
  return hint % 2 == 1;
}

}  // namespace quillan::store
