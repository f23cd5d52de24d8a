#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include "host/PlacedWidgetView.hpp"
#include "platform/Date.hpp"
#include "platform/TimeZone.hpp"
#include "views/Environment.hpp"

namespace quillan::server {

// GET /api/widgets: {"now", "widgets": [{"kind", "family", "state" (ok, failed,
// or loading before the first timeline), "reason"?,
// "entry": {"date"}, "policy", "nextReload", "reloads": {"policy", "app",
// "budget"}, "version"}]}, dates in ISO-8601 in `zone`, null where unknown.
nlohmann::json widgetsJson(platform::Date now, const std::vector<host::PlacedWidgetView>& widgets,
                           const platform::TimeZone& zone);

}  // namespace quillan::server
