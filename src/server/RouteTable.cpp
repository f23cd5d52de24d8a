#include "server/RouteTable.hpp"

#include <algorithm>
#include <array>

#include "server/RouteHandlers.hpp"

namespace quillan::server {
namespace {

using Handlers = RouteHandlers;

constexpr std::array kRoutes{
    Route{"/", &Handlers::handlePage},
    Route{"/page.js", &Handlers::handlePageScript},
    Route{"/page.css", &Handlers::handlePageStyle},
    Route{"/api/widgets", &Handlers::handleWidgets},
    Route{"/api/clock", &Handlers::handleClock, &Handlers::handleClockChange},
    Route{"/api/environment", &Handlers::handleEnvironment, &Handlers::handleEnvironmentChange},
    Route{"/api/render", &Handlers::handleRender},
    Route{"/api/tap", &Handlers::handleTap},
    Route{"/api/events", &Handlers::handleEvents},
};

}  // namespace

std::span<const Route> routeTable() { return kRoutes; }

const Route* routeOf(std::string_view path) {
  const auto found = std::find_if(kRoutes.begin(), kRoutes.end(),
                                  [&](const Route& route) { return route.path == path; });
  return found == kRoutes.end() ? nullptr : &*found;
}

}  // namespace quillan::server
