#include "server/PageSettings.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "render/DeviceProfile.hpp"
#include "server/RequestError.hpp"
#include "views/JsonNesting.hpp"

namespace quillan::server {
namespace {

// No name the API accepts is longer; a longer value is refused before any
// library is asked to look it up.
constexpr std::size_t kMaxValueBytes = 100;

template <views::NamedEnum E>
std::string checkedName(const std::string& key, const std::string& text) {
  if (!views::fromString<E>(text)) {
    throw badValue(key, "unknown value", text, "expected " + views::acceptedNames<E>());
  }
  return text;
}

// Plain decimals only ("2", "2.5"), as on the command line.
double scaleFrom(const std::string& text) {
  double value = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value) || value < 1 || value > 3) {
    throw badValue("scale", "expected a decimal number from 1 to 3, got", text);
  }
  return value;
}

void checkScale(double value) {
  if (!std::isfinite(value) || value < 1 || value > 3) {
    throw RequestError("scale: expected a number from 1 to 3");
  }
}

// null: back to the default (the process's zone and locale, the family's
// scheme and mode, the locale's direction).
void unsetSetting(host::HostEnvironment& settings, const std::string& key) {
  if (key == "colorScheme") settings.colorScheme.reset();
  else if (key == "renderingMode") settings.renderingMode.reset();
  else if (key == "locale") settings.locale.reset();
  else if (key == "timeZone") settings.timeZone.reset();
  else if (key == "layoutDirection") settings.layoutDirection.reset();
  else throw RequestError(key + ": has no default to go back to; expected a value");
}

// As --locale checks it: ICU makes up a calendar for any keyword it does not know.
void checkLocale(const std::string& text) {
  const auto locale = platform::Locale::named(text);
  if (!locale) throw badValue("locale", "unknown locale", text, "expected an ICU name, e.g. de_DE");
  if (const auto calendar = locale->calendarKeyword(); calendar && !platform::Locale::knowsCalendar(*calendar)) {
    throw badValue("locale", "unknown calendar keyword", "calendar=" + *calendar,
                   "expected one ICU knows, e.g. gregorian, japanese, buddhist");
  }
}

// As --platform-version takes it: phones report a patch level too, which
// widgets never tell apart.
std::string checkedPlatformVersion(const std::string& text) {
  constexpr const char* kHint = "expected MAJOR, MAJOR.MINOR or MAJOR.MINOR.PATCH, e.g. 17.0.1";
  std::string_view majorMinor = text;
  if (const auto first = text.find('.'); first != std::string::npos) {
    if (const auto second = text.find('.', first + 1); second != std::string::npos) {
      const auto patch = majorMinor.substr(second + 1);
      if (patch.empty() || patch.size() > 4 || patch.find_first_not_of("0123456789") != std::string_view::npos) {
        throw badValue("platformVersion", "not a version", text, kHint);
      }
      majorMinor = majorMinor.substr(0, second);
    }
  }
  try {
    return views::parsePlatformVersion(majorMinor).toString();
  } catch (const views::EnvironmentParseError&) {
    throw badValue("platformVersion", "not a version", text, kHint);
  }
}

}  // namespace

bool isSettingKey(const std::string& key) {
  return std::find(std::begin(kSettingKeys), std::end(kSettingKeys), key) != std::end(kSettingKeys);
}

void applySettingText(host::HostEnvironment& settings, const std::string& key, const std::string& text) {
  if (!isSettingKey(key)) throw badValue("environment", "unknown key", key);
  if (text.size() > kMaxValueBytes) throw badValue(key, "value too long", text);
  if (key == "colorScheme") {
    settings.colorScheme = checkedName<views::ColorScheme>(key, text);
  } else if (key == "renderingMode") {
    settings.renderingMode = checkedName<views::WidgetRenderingMode>(key, text);
  } else if (key == "platformVersion") {
    settings.platformVersion = checkedPlatformVersion(text);
  } else if (key == "locale") {
    checkLocale(text);
    settings.locale = text;
  } else if (key == "timeZone") {
    if (!platform::TimeZone::named(text)) throw badValue(key, "unknown time zone", text);
    settings.timeZone = text;
  } else if (key == "layoutDirection") {
    settings.layoutDirection = checkedName<views::LayoutDirection>(key, text);
  } else if (key == "dynamicType") {
    settings.dynamicType = checkedName<views::DynamicTypeSize>(key, text);
  } else if (key == "device") {
    if (!render::DeviceProfile::named(text)) throw badValue(key, "unknown device", text);
    settings.device = text;
  } else if (key == "scale") {
    settings.scale = scaleFrom(text);
  } else if (text == "true" || text == "false") {
    settings.redacted = text == "true";
  } else {
    throw badValue(key, "expected true or false, got", text);
  }
}

void applySettingsJson(host::HostEnvironment& settings, const nlohmann::json& object) {
  if (!object.is_object()) throw RequestError("environment: expected a JSON object");
  host::HostEnvironment changed = settings;
  for (const auto& [key, value] : object.items()) {
    if (!isSettingKey(key)) throw badValue("environment", "unknown key", key);
    if (key == "scale") {
      if (!value.is_number()) throw RequestError("scale: expected a number from 1 to 3");
      checkScale(value.get<double>());
      changed.scale = value.get<double>();
    } else if (key == "redacted") {
      if (!value.is_boolean()) throw RequestError("redacted: expected true or false");
      changed.redacted = value.get<bool>();
    } else if (value.is_null()) {
      unsetSetting(changed, key);
    } else {
      if (!value.is_string()) throw RequestError(key + ": expected a string");
      applySettingText(changed, key, value.get<std::string>());
    }
  }
  settings = changed;
}

void applySettingsBody(host::HostEnvironment& settings, std::string_view body) {
  if (!views::jsonNestsWithin(body)) throw RequestError("environment: the body nests too deep");
  const auto json = nlohmann::json::parse(body, nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) throw RequestError("environment: the body is not JSON");
  applySettingsJson(settings, json);
}

nlohmann::json toJson(const host::HostEnvironment& settings) {
  nlohmann::json json;
  json["colorScheme"] = settings.colorScheme ? nlohmann::json(*settings.colorScheme) : nlohmann::json();
  json["renderingMode"] = settings.renderingMode ? nlohmann::json(*settings.renderingMode) : nlohmann::json();
  json["platformVersion"] = settings.platformVersion;
  json["locale"] = settings.locale ? nlohmann::json(*settings.locale) : nlohmann::json();
  json["timeZone"] = settings.timeZone ? nlohmann::json(*settings.timeZone) : nlohmann::json();
  json["layoutDirection"] = settings.layoutDirection ? nlohmann::json(*settings.layoutDirection) : nlohmann::json();
  json["dynamicType"] = settings.dynamicType;
  json["device"] = settings.device;
  json["scale"] = settings.scale;
  json["redacted"] = settings.redacted;
  return json;
}

render::RenderContext renderContext(const host::HostEnvironment& settings, views::WidgetFamily family) {
  auto context = render::makeRenderContext(viewEnvironment(settings, family), family,
                                           *render::DeviceProfile::named(settings.device), settings.scale);
  context.redacted = settings.redacted;
  return context;
}

}  // namespace quillan::server
