#include "replay/SimulationLog.hpp"

#include "hosting/TimelineJson.hpp"
#include "platform/ISO8601.hpp"
#include "views/Overload.hpp"

namespace quillan::replay {

using OrderedJson = nlohmann::ordered_json;

SimulationLog::SimulationLog(platform::TimeZone zone) : zone_(std::move(zone)) {}

std::string SimulationLog::iso(platform::Date date) const { return platform::ISO8601::format(date, zone_); }

OrderedJson& SimulationLog::start(platform::Date at, const std::string& kind, std::string_view type) {
  OrderedJson event;
  event["at"] = iso(at);
  event["kind"] = kind;
  event["type"] = type;
  events_.push_back(std::move(event));
  return events_.back();
}

OrderedJson& SimulationLog::add(const host::SchedulerEvent& event) {
  auto& json = start(event.at, event.kind, host::eventTypeName(event.type()));
  std::visit(
      views::Overload{
          [&](const host::TimelineReceived& timeline) {
            // The same shape the timeline command prints.
            const auto answer = OrderedJson::parse(hosting::timelineJson({timeline.entryDates, timeline.policy}));
            json["entries"] = answer["entries"];
            json["policy"] = answer["policy"];
          },
          [&](const host::EntryShown& entry) { json["date"] = iso(entry.entryDate); },
          [&](const host::ReloadStarted& reload) {
            json["reason"] = host::reloadReasonName(reload.reason);
            if (reload.deferredUntil) json["until"] = iso(*reload.deferredUntil);
          },
          [&](const host::AskFailed& failure) { json["reason"] = failure.reason; },
      },
      event.detail);
  return json;
}

void SimulationLog::attach(OrderedJson& entryEvent, const pages::EntryPictures& pictures) {
  entryEvent["light"] = pictures.light;
  entryEvent["dark"] = pictures.dark;
  entryEvent["view"] = pictures.view;
}

void SimulationLog::addFailure(platform::Date at, const std::string& kind, const std::string& reason) {
  start(at, kind, "failed")["reason"] = reason;
}

std::string SimulationLog::text() const {
  OrderedJson log;
  log["events"] = events_;
  // Failure reasons may quote note text that is not UTF-8; the log stays valid JSON.
  return log.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

}  // namespace quillan::replay
