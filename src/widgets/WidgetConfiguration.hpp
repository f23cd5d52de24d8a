#pragma once

#include <functional>
#include <string>
#include <vector>

#include "views/Environment.hpp"
#include "widgets/EntryView.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::widgets {

// A static configuration: a widget's identity towards the host (its kind, which
// must never change or placed widgets are lost), its gallery texts and family,
// a new provider for every request and the content function from entry to view.
struct WidgetConfiguration {
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<views::WidgetFamily> supportedFamilies;
  std::function<TimelineAnswer(TimelineRequest, const TimelineProviderContext&)> provider;
  EntryViewFunction content;
};

// Joins a provider type and an entry-view type into a configuration.
template <typename Provider, typename MakeView>
WidgetConfiguration staticConfiguration(std::string kind, MakeView makeView) {
  WidgetConfiguration configuration;
  configuration.kind = std::move(kind);
  configuration.provider = [](TimelineRequest request, const TimelineProviderContext& context) {
    return askProvider(Provider{}, request, context);
  };
  configuration.content = [makeView](platform::Date entryDate, const views::Environment& environment) {
    return makeView(typename Provider::Entry{entryDate}).body(environment);
  };
  return configuration;
}

}  // namespace quillan::widgets
