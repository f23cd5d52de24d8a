#include "hosting/TimelineJson.hpp"

#include <nlohmann/json.hpp>

#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::hosting {
namespace {

std::string policyType(widgets::TimelineReloadPolicy::Kind kind) {
  switch (kind) {
    case widgets::TimelineReloadPolicy::Kind::atEnd: return "atEnd";
    case widgets::TimelineReloadPolicy::Kind::after: return "after";
    case widgets::TimelineReloadPolicy::Kind::never: return "never";
  }
  return "atEnd";
}

}  // namespace

std::string timelineJson(const widgets::TimelineAnswer& answer) {
  const auto zone = platform::TimeZone::current();
  nlohmann::ordered_json json;
  json["entries"] = nlohmann::ordered_json::array();
  for (const auto& date : answer.entryDates) {
    json["entries"].push_back({{"date", platform::ISO8601::format(date, zone)}});
  }
  if (answer.policy) {
    json["policy"]["type"] = policyType(answer.policy->kind());
    if (const auto date = answer.policy->date()) json["policy"]["date"] = platform::ISO8601::format(*date, zone);
  }
  return json.dump();
}

}  // namespace quillan::hosting
