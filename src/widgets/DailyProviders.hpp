#pragma once

#include <functional>

#include "platform/Date.hpp"
#include "widgets/DailyTimeline.hpp"
#include "widgets/TimelineProviderContext.hpp"

namespace quillan::widgets {

// The three entries of the date-only providers. Each carries nothing but the
// moment it becomes current; the entry views read the journal when drawn.
struct SimpleEntry {
  platform::Date date;
};
struct OTDComposeEntry {
  platform::Date date;
};
struct ComposeLockScreenEntry {
  platform::Date date;
};

// A provider that answers the host's three requests with one pattern: a
// placeholder and a snapshot dated now, and a timeline of one entry at the
// start of today reloaded after the start of tomorrow. Nothing is kept between
// requests and every answer is given before the call returns.
template <typename EntryType>
struct DailyProvider {
  using Entry = EntryType;

  Entry placeholder(const TimelineProviderContext&) const { return entryDatedNow<Entry>(); }
  void getSnapshot(const TimelineProviderContext&, const std::function<void(Entry)>& completion) const {
    completion(entryDatedNow<Entry>());
  }
  void getTimeline(const TimelineProviderContext&, const std::function<void(Timeline<Entry>)>& completion) const {
    completion(dailyTimeline<Entry>(kSource));
  }

 private:
  static constexpr std::string_view kSource = "OnThisDayWidgetExtension/Provider";
};

using Provider = DailyProvider<SimpleEntry>;
using OTDComposeProvider = DailyProvider<OTDComposeEntry>;
using ComposeLockScreenProvider = DailyProvider<ComposeLockScreenEntry>;

}  // namespace quillan::widgets
