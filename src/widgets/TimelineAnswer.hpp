#pragma once

#include <optional>
#include <vector>

#include "platform/Date.hpp"
#include "widgets/Timeline.hpp"
#include "widgets/TimelineProviderContext.hpp"

namespace quillan::widgets {

// The three things a host can ask a provider for.
enum class TimelineRequest { timeline, snapshot, placeholder };

// A provider's answer with the entry type erased: every entry of every widget
// carries only its date. Placeholders and snapshots have no reload policy.
struct TimelineAnswer {
  std::vector<platform::Date> entryDates;
  std::optional<TimelineReloadPolicy> policy;
};

// Asks `provider` as the host would, collecting what its completion hands back.
template <typename Provider>
TimelineAnswer askProvider(const Provider& provider, TimelineRequest request,
                           const TimelineProviderContext& context = {}) {
  using Entry = typename Provider::Entry;
  TimelineAnswer answer;
  switch (request) {
    case TimelineRequest::placeholder: answer.entryDates.push_back(provider.placeholder(context).date); break;
    case TimelineRequest::snapshot:
      provider.getSnapshot(context, [&](Entry entry) { answer.entryDates.push_back(entry.date); });
      break;
    case TimelineRequest::timeline:
      provider.getTimeline(context, [&](Timeline<Entry> timeline) {
        for (const auto& entry : timeline.entries) answer.entryDates.push_back(entry.date);
        answer.policy = timeline.policy;
      });
      break;
  }
  return answer;
}

}  // namespace quillan::widgets
