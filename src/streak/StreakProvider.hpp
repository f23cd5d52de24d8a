#pragma once

#include <functional>
#include <string_view>

#include "streak/StreakEntry.hpp"
#include "widgets/DailyTimeline.hpp"
#include "widgets/Timeline.hpp"
#include "widgets/TimelineProviderContext.hpp"

namespace quillan::streak {

// The daily pattern every widget of the bundle follows: a placeholder and a
// snapshot dated now, and one entry at the start of today reloaded after the
// start of tomorrow, so the row moves on at each local midnight.
struct StreakProvider {
  using Entry = StreakEntry;

  Entry placeholder(const widgets::TimelineProviderContext&) const { return widgets::entryDatedNow<Entry>(); }
  void getSnapshot(const widgets::TimelineProviderContext&, const std::function<void(Entry)>& completion) const {
    completion(widgets::entryDatedNow<Entry>());
  }
  void getTimeline(const widgets::TimelineProviderContext&,
                   const std::function<void(widgets::Timeline<Entry>)>& completion) const {
    completion(widgets::dailyTimeline<Entry>(kSource));
  }

 private:
  static constexpr std::string_view kSource = "OnThisDayWidgetExtension/StreakProvider";
};

}  // namespace quillan::streak
