#pragma once

namespace quillan::widgets {

// What the host tells a provider about the placement it asks for. The widgets'
// providers answer the same whatever it says.
struct TimelineProviderContext {
  bool isPreview = false;
};

}  // namespace quillan::widgets
