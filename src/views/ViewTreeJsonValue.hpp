#pragma once

// The view tree as a JSON value, for code that embeds it in JSON of its own
// (the worker's messages, tests comparing trees). Users of the library meet
// only the text form in views/ViewTreeJson.hpp.

#include <nlohmann/json.hpp>

#include "views/Node.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::views {

nlohmann::ordered_json toJson(const Node& node);
// Throws ViewTreeJsonError.
Node nodeFromJson(const nlohmann::ordered_json& json);

}  // namespace quillan::views
