#include "worker/EvaluationJson.hpp"

#include <cmath>

#include "views/EnumNames.hpp"

namespace quillan::worker {
namespace {

using Json = nlohmann::json;
using widgets::TimelineReloadPolicy;
using widgets::TimelineRequest;

const Json& field(const Json& json, const char* key) {
  if (!json.is_object() || !json.contains(key)) {
    throw EvaluationJsonError(std::string("worker message: missing \"") + key + "\"");
  }
  return json[key];
}

std::string stringField(const Json& json, const char* key) {
  const auto& value = field(json, key);
  if (!value.is_string()) throw EvaluationJsonError(std::string("worker message: \"") + key + "\" is not a string");
  return value.get<std::string>();
}

platform::Date dateFrom(const Json& value, const char* key) {
  if (!value.is_number() || !std::isfinite(value.get<double>())) {
    throw EvaluationJsonError(std::string("worker message: \"") + key + "\" is not a finite number");
  }
  return platform::Date::fromReferenceSeconds(value.get<double>());
}

platform::Date dateField(const Json& json, const char* key) { return dateFrom(field(json, key), key); }

const char* requestName(TimelineRequest request) {
  switch (request) {
    case TimelineRequest::timeline: return "timeline";
    case TimelineRequest::snapshot: return "snapshot";
    case TimelineRequest::placeholder: return "placeholder";
  }
  return "timeline";
}

TimelineRequest requestNamed(const std::string& name) {
  if (name == "timeline") return TimelineRequest::timeline;
  if (name == "snapshot") return TimelineRequest::snapshot;
  if (name == "placeholder") return TimelineRequest::placeholder;
  throw EvaluationJsonError("worker message: unknown request \"" + name + "\"");
}

const char* policyName(TimelineReloadPolicy::Kind kind) {
  switch (kind) {
    case TimelineReloadPolicy::Kind::atEnd: return "atEnd";
    case TimelineReloadPolicy::Kind::after: return "after";
    case TimelineReloadPolicy::Kind::never: return "never";
  }
  return "atEnd";
}

TimelineReloadPolicy policyFromJson(const Json& json) {
  const auto type = stringField(json, "type");
  if (type == "atEnd") return TimelineReloadPolicy::atEnd();
  if (type == "never") return TimelineReloadPolicy::never();
  if (type == "after") return TimelineReloadPolicy::after(dateField(json, "date"));
  throw EvaluationJsonError("worker message: unknown reload policy \"" + type + "\"");
}

Json environmentJson(const views::Environment& environment) {
  return {{"colorScheme", views::toString(environment.colorScheme)},
          {"renderingMode", views::toString(environment.renderingMode)},
          {"platformVersion", environment.platformVersion.toString()},
          {"family", views::toString(environment.family)},
          {"layoutDirection", views::toString(environment.layoutDirection)},
          {"dynamicTypeSize", views::toString(environment.dynamicTypeSize)}};
}

views::Environment environmentFromJson(const Json& json) {
  try {
    views::Environment environment;
    environment.colorScheme = views::parseColorScheme(stringField(json, "colorScheme"));
    environment.renderingMode = views::parseRenderingMode(stringField(json, "renderingMode"));
    environment.platformVersion = views::parsePlatformVersion(stringField(json, "platformVersion"));
    environment.family = views::parseWidgetFamily(stringField(json, "family"));
    environment.layoutDirection = views::parseLayoutDirection(stringField(json, "layoutDirection"));
    environment.dynamicTypeSize = views::parseDynamicTypeSize(stringField(json, "dynamicTypeSize"));
    return environment;
  } catch (const views::EnvironmentParseError& error) {
    throw EvaluationJsonError(std::string("worker message: ") + error.what());
  }
}

}  // namespace

Json toJson(const ProcessSettings& settings) {
  Json json = Json::object();
  if (settings.timeZone) json["timeZone"] = *settings.timeZone;
  if (settings.locale) json["locale"] = *settings.locale;
  if (settings.seed) json["seed"] = *settings.seed;
  if (settings.groupContainer) json["groupContainer"] = settings.groupContainer->string();
  if (settings.appSupport) json["appSupport"] = settings.appSupport->string();
  return json;
}

ProcessSettings processSettingsFromJson(const Json& json) {
  if (!json.is_object()) throw EvaluationJsonError("worker message: \"settings\" is not an object");
  ProcessSettings settings;
  if (json.contains("timeZone")) settings.timeZone = stringField(json, "timeZone");
  if (json.contains("locale")) settings.locale = stringField(json, "locale");
  if (json.contains("seed")) {
    if (!json["seed"].is_number_unsigned()) throw EvaluationJsonError("worker message: \"seed\" is not unsigned");
    settings.seed = json["seed"].get<std::uint64_t>();
  }
  if (json.contains("groupContainer")) settings.groupContainer = stringField(json, "groupContainer");
  if (json.contains("appSupport")) settings.appSupport = stringField(json, "appSupport");
  return settings;
}

Json toJson(const TimelineEvaluation& evaluation) {
  return {{"type", "timeline"},
          {"kind", evaluation.kind},
          {"at", evaluation.at.timeIntervalSinceReferenceDate()},
          {"request", requestName(evaluation.request)},
          {"settings", toJson(evaluation.settings)}};
}

Json toJson(const ViewEvaluation& evaluation) {
  return {{"type", "view"},
          {"kind", evaluation.kind},
          {"entryDate", evaluation.entryDate.timeIntervalSinceReferenceDate()},
          {"at", evaluation.at.timeIntervalSinceReferenceDate()},
          {"environment", environmentJson(evaluation.environment)},
          {"settings", toJson(evaluation.settings)}};
}

TimelineEvaluation timelineEvaluationFromJson(const Json& json) {
  TimelineEvaluation evaluation;
  evaluation.kind = stringField(json, "kind");
  evaluation.at = dateField(json, "at");
  evaluation.request = requestNamed(stringField(json, "request"));
  evaluation.settings = processSettingsFromJson(field(json, "settings"));
  return evaluation;
}

ViewEvaluation viewEvaluationFromJson(const Json& json) {
  ViewEvaluation evaluation;
  evaluation.kind = stringField(json, "kind");
  evaluation.entryDate = dateField(json, "entryDate");
  evaluation.at = dateField(json, "at");
  evaluation.environment = environmentFromJson(field(json, "environment"));
  evaluation.settings = processSettingsFromJson(field(json, "settings"));
  return evaluation;
}

Json toJson(const widgets::TimelineAnswer& answer) {
  Json json;
  json["entries"] = Json::array();
  for (const auto& date : answer.entryDates) json["entries"].push_back(date.timeIntervalSinceReferenceDate());
  if (answer.policy) {
    json["policy"]["type"] = policyName(answer.policy->kind());
    if (const auto date = answer.policy->date()) json["policy"]["date"] = date->timeIntervalSinceReferenceDate();
  }
  return json;
}

widgets::TimelineAnswer timelineAnswerFromJson(const Json& json) {
  const auto& entries = field(json, "entries");
  if (!entries.is_array()) throw EvaluationJsonError("worker message: \"entries\" is not an array");
  widgets::TimelineAnswer answer;
  for (const auto& entry : entries) answer.entryDates.push_back(dateFrom(entry, "entries"));
  if (json.contains("policy")) answer.policy = policyFromJson(json["policy"]);
  return answer;
}

}  // namespace quillan::worker
