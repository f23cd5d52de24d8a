#pragma once

#include <vector>

#include "widgets/TimelineReloadPolicy.hpp"

namespace quillan::widgets {

// A provider's answer: dated entries, each current from its date on, and when to ask again.
template <typename Entry>
struct Timeline {
  std::vector<Entry> entries;
  TimelineReloadPolicy policy;
};

}  // namespace quillan::widgets
