#include "hosting/WidgetLookup.hpp"

#include "bundle/TimelineWidgetBundle.hpp"
#include "hosting/UsageError.hpp"
#include "platform/Clock.hpp"
#include "views/EnumNames.hpp"

namespace quillan::hosting {

const widgets::WidgetConfiguration& widgetOfKind(const std::string& kind) {
  if (const auto* widget = bundle::TimelineWidgetBundle::widget(kind)) return *widget;
  std::string known;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    known += (known.empty() ? "" : ", ") + widget.kind;
  }
  throw badOption("--kind", "unknown widget kind", kind, "known: " + known);
}

platform::Date currentEntryDate(const widgets::WidgetConfiguration& widget) {
  const auto answer = widget.provider(widgets::TimelineRequest::timeline, {});
  const auto now = platform::Clock::now();
  platform::Date current = answer.entryDates.front();
  for (const auto& date : answer.entryDates) {
    if (date <= now) current = date;
  }
  return current;
}

std::string familyName(views::WidgetFamily family) { return std::string(views::toString(family)); }

render::DeviceProfile deviceNamed(const std::string& name) {
  if (auto device = render::DeviceProfile::named(name)) return *device;
  std::string known;
  for (const auto& profile : render::DeviceProfile::profileNames()) known += (known.empty() ? "" : ", ") + profile;
  throw badOption("--device", "unknown device", name, "known: " + known);
}

}  // namespace quillan::hosting
