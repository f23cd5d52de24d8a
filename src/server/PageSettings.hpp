#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "platform/Locale.hpp"
#include "render/RenderContext.hpp"
#include "views/Environment.hpp"
#include "worker/Evaluation.hpp"

namespace quillan::server {

// The environment the page gives every widget: what the command line set,
// then what the page or one render request changed. Values are kept as the
// names the API accepts, already checked.
struct PageSettings {
  std::optional<std::string> colorScheme;  // unset: light, dark when vibrant
  // Unset: fullColor on the home screen; the lock screen's widgets are always
  // drawn vibrant unless a request names a mode.
  std::optional<std::string> renderingMode;
  std::string platformVersion = "17.0";
  std::optional<std::string> locale;    // unset: the process's
  std::optional<std::string> timeZone;  // unset: the process's
  std::optional<std::string> layoutDirection;  // unset: the locale's character order
  std::string dynamicType = "large";
  std::string device = "393x852";
  double scale = 2;
  bool redacted = false;

  bool operator==(const PageSettings&) const = default;
};

// The keys a render request or POST /api/environment may set.
inline constexpr const char* kSettingKeys[] = {"colorScheme",     "renderingMode", "locale",      "timeZone",
                                               "platformVersion", "layoutDirection", "dynamicType", "device",
                                               "scale",           "redacted"};

bool isSettingKey(const std::string& key);

// Sets one key from its text (a query parameter). Throws RequestError naming
// the key and the value for an unknown key or a bad value.
void applySettingText(PageSettings& settings, const std::string& key, const std::string& text);
// Sets every key of a JSON object (strings; scale a number, redacted a
// boolean; null puts colorScheme, renderingMode, locale, timeZone or
// layoutDirection back to its default). Throws RequestError for anything else, changing nothing.
void applySettingsJson(PageSettings& settings, const nlohmann::json& object);
// The body of POST /api/environment: JSON text, checked for nesting before it
// is parsed, then applied as applySettingsJson. Throws RequestError.
void applySettingsBody(PageSettings& settings, std::string_view body);

nlohmann::json toJson(const PageSettings& settings);

// The page's locale, else the process's.
platform::Locale localeOf(const PageSettings& settings);

// What the views are told for a widget of `family`.
views::Environment viewEnvironment(const PageSettings& settings, views::WidgetFamily family);
render::RenderContext renderContext(const PageSettings& settings, views::WidgetFamily family);
// The extension process's zone and locale.
worker::ProcessSettings processSettings(const PageSettings& settings);

}  // namespace quillan::server
