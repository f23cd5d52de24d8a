#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "host/SchedulerEvent.hpp"
#include "pages/EntryPictures.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::replay {

// log.json of a replay: {"events": [...]} in the order the host handled them,
// each {"at", "kind", "type", ...}, instants in ISO-8601 in `zone`:
//   timeline  "entries" (dates) and "policy" ({"type", "date"?}) as returned
//   entry     "date" of the entry, and "light", "dark", "view": its files
//   reload    "reason" (policy, app, budget-deferred, ...), "until" when deferred
//   failed    "reason", one line
class SimulationLog {
 public:
  explicit SimulationLog(platform::TimeZone zone);

  // Appends the event; returns it so that an entry can be given its files.
  nlohmann::ordered_json& add(const host::SchedulerEvent& event);
  static void attach(nlohmann::ordered_json& entryEvent, const pages::EntryPictures& pictures);
  void addFailure(platform::Date at, const std::string& kind, const std::string& reason);

  std::string text() const;
  std::string iso(platform::Date date) const;

 private:
  nlohmann::ordered_json& start(platform::Date at, const std::string& kind, std::string_view type);

  platform::TimeZone zone_;
  nlohmann::ordered_json events_ = nlohmann::ordered_json::array();
};

}  // namespace quillan::replay
