#include "platform/ZoneOffsetTable.hpp"

#include <unicode/basictz.h>
#include <unicode/tztrans.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/TimeZoneImpl.hpp"

namespace quillan::platform {
namespace {

constexpr double kUnbounded = std::numeric_limits<double>::infinity();

const icu::BasicTimeZone* transitionsOf(const TimeZone& zone) {
  return dynamic_cast<const icu::BasicTimeZone*>(zone.impl().zone.get());
}

}  // namespace

ZoneOffsetTable::ZoneOffsetTable(TimeZone zone) : zone_(std::move(zone)) {}

int ZoneOffsetTable::secondsFromGMT(Date date) {
  const double millis = date.unixMilliseconds();
  if (const auto* stretch = find(millis)) return stretch->offsetSeconds;
  const auto stretch = stretchAround(date);
  // A stretch that does not hold its own date (a zone without transition
  // data, a date beyond what ICU can place) is answered but never kept.
  if (!stretch.holds(millis)) return stretch.offsetSeconds;
  const auto at = std::upper_bound(stretches_.begin(), stretches_.end(), stretch.startMillis,
                                   [](double start, const Stretch& other) { return start < other.startMillis; });
  lastUsed_ = static_cast<std::size_t>(stretches_.insert(at, stretch) - stretches_.begin());
  return stretch.offsetSeconds;
}

const ZoneOffsetTable::Stretch* ZoneOffsetTable::find(double millis) {
  // Journals are read in date order more often than not: the last stretch
  // used usually holds the next date too.
  if (lastUsed_ < stretches_.size() && stretches_[lastUsed_].holds(millis)) return &stretches_[lastUsed_];
  const auto after = std::upper_bound(stretches_.begin(), stretches_.end(), millis,
                                      [](double value, const Stretch& stretch) { return value < stretch.startMillis; });
  if (after == stretches_.begin()) return nullptr;
  const auto candidate = std::prev(after);
  if (!candidate->holds(millis)) return nullptr;
  lastUsed_ = static_cast<std::size_t>(candidate - stretches_.begin());
  return &*candidate;
}

ZoneOffsetTable::Stretch ZoneOffsetTable::stretchAround(Date date) const {
  const double millis = date.unixMilliseconds();
  const int offset = zone_.secondsFromGMT(date);
  const auto* zone = transitionsOf(zone_);
  if (!zone || !std::isfinite(millis)) return {kUnbounded, kUnbounded, offset};
  icu::TimeZoneTransition transition;
  double start = -kUnbounded;
  double end = kUnbounded;
  if (zone->getPreviousTransition(millis, /*inclusive=*/true, transition)) start = transition.getTime();
  if (zone->getNextTransition(millis, /*inclusive=*/false, transition)) end = transition.getTime();
  return {start, end, offset};
}

}  // namespace quillan::platform
