#pragma once

#include <string_view>

#include "server/ApiRequests.hpp"

namespace quillan::server {

// A request target's query (after the '?'), as a form encodes it: pairs
// joined by '&', name and value split by one '=', '+' for a space and %XX
// escapes. Throws RequestError for a pair with a second '=' (which value was
// meant is a guess), an empty name or a broken escape.
QueryParameters parseQueryText(std::string_view query);

}  // namespace quillan::server
