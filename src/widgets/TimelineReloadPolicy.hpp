#pragma once

#include <optional>

#include "platform/Date.hpp"

namespace quillan::widgets {

// When the host should next ask a provider for a timeline: after the last entry
// (atEnd), not before a given date (after), or only when asked from outside (never).
class TimelineReloadPolicy {
 public:
  enum class Kind { atEnd, after, never };

  static TimelineReloadPolicy atEnd() { return TimelineReloadPolicy(Kind::atEnd, std::nullopt); }
  static TimelineReloadPolicy after(platform::Date date) { return TimelineReloadPolicy(Kind::after, date); }
  static TimelineReloadPolicy never() { return TimelineReloadPolicy(Kind::never, std::nullopt); }

  Kind kind() const { return kind_; }
  // Set only for `after`.
  std::optional<platform::Date> date() const { return date_; }

  bool operator==(const TimelineReloadPolicy&) const = default;

 private:
  TimelineReloadPolicy(Kind kind, std::optional<platform::Date> date) : kind_(kind), date_(date) {}
  Kind kind_;
  std::optional<platform::Date> date_;
};

}  // namespace quillan::widgets
