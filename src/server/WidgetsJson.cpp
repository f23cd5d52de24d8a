#include "server/WidgetsJson.hpp"

#include "platform/ISO8601.hpp"
#include "views/EnumNames.hpp"

namespace quillan::server {
namespace {

nlohmann::json dateJson(const std::optional<platform::Date>& date, const platform::TimeZone& zone) {
  return date ? nlohmann::json(platform::ISO8601::format(*date, zone)) : nlohmann::json();
}

nlohmann::json policyJson(const std::optional<widgets::TimelineReloadPolicy>& policy, const platform::TimeZone& zone) {
  if (!policy) return nullptr;
  using Kind = widgets::TimelineReloadPolicy::Kind;
  nlohmann::json json;
  json["type"] = policy->kind() == Kind::after ? "after" : policy->kind() == Kind::atEnd ? "atEnd" : "never";
  if (policy->date()) json["date"] = dateJson(policy->date(), zone);
  return json;
}

nlohmann::json widgetJson(const host::PlacedWidgetView& widget, const platform::TimeZone& zone) {
  const auto& state = widget.state;
  nlohmann::json json;
  json["kind"] = state.kind;
  json["family"] = std::string(views::toString(widget.family));
  json["state"] = !state.ok() ? "failed" : state.loading() ? "loading" : "ok";
  if (state.failure) json["reason"] = *state.failure;
  json["entry"] = {{"date", dateJson(state.entry, zone)}};
  json["policy"] = policyJson(state.policy, zone);
  json["nextReload"] = dateJson(state.nextReload, zone);
  json["stale"] = state.staleUntil.has_value();
  json["reloads"] = {{"policy", state.reloads.policy}, {"app", state.reloads.app}, {"budget", state.reloadBudget}};
  json["version"] = state.version;
  return json;
}

}  // namespace

nlohmann::json widgetsJson(platform::Date now, const std::vector<host::PlacedWidgetView>& widgets,
                           const platform::TimeZone& zone) {
  nlohmann::json json;
  json["now"] = platform::ISO8601::format(now, zone);
  json["widgets"] = nlohmann::json::array();
  for (const auto& widget : widgets) json["widgets"].push_back(widgetJson(widget, zone));
  return json;
}

}  // namespace quillan::server
