#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "host/HostEnvironment.hpp"
#include "render/RenderContext.hpp"

namespace quillan::server {

// The page's settings are the host's environment (host::HostEnvironment),
// under the names the API gives its keys.

// The keys a render request or POST /api/environment may set.
inline constexpr const char* kSettingKeys[] = {"colorScheme",     "renderingMode",   "locale",      "timeZone",
                                               "platformVersion", "layoutDirection", "dynamicType", "device",
                                               "scale",           "redacted"};

bool isSettingKey(const std::string& key);

// Sets one key from its text (a query parameter). Throws RequestError naming
// the key and the value for an unknown key or a bad value.
void applySettingText(host::HostEnvironment& settings, const std::string& key, const std::string& text);
// Sets every key of a JSON object (strings; scale a number, redacted a
// boolean; null puts colorScheme, renderingMode, locale, timeZone or
// layoutDirection back to its default). Throws RequestError for anything else, changing nothing.
void applySettingsJson(host::HostEnvironment& settings, const nlohmann::json& object);
// The body of POST /api/environment: JSON text, checked for nesting before it
// is parsed, then applied as applySettingsJson. Throws RequestError.
void applySettingsBody(host::HostEnvironment& settings, std::string_view body);

nlohmann::json toJson(const host::HostEnvironment& settings);

// What the page's pictures are drawn with for a widget of `family`.
render::RenderContext renderContext(const host::HostEnvironment& settings, views::WidgetFamily family);

}  // namespace quillan::server
