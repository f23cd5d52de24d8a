#include "server/ApiRequests.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <optional>

#include "bundle/TimelineWidgetBundle.hpp"
#include "server/RequestError.hpp"

namespace quillan::server {
namespace {

// Far outside any widget, yet small enough that no layout arithmetic overflows.
constexpr double kLargestCoordinate = 100000;

void checkNames(const QueryParameters& query, std::initializer_list<const char*> own) {
  for (auto at = query.begin(); at != query.end(); at = query.upper_bound(at->first)) {
    const auto& name = at->first;
    if (query.count(name) > 1) throw badValue("query", "parameter given more than once", name);
    const bool known = isSettingKey(name) ||
                       std::any_of(own.begin(), own.end(), [&](const char* mine) { return name == mine; });
    if (!known) throw badValue("query", "unknown parameter", name);
  }
}

std::optional<std::string> parameter(const QueryParameters& query, const std::string& name) {
  const auto found = query.find(name);
  if (found == query.end()) return std::nullopt;
  return found->second;
}

std::string requiredParameter(const QueryParameters& query, const std::string& name) {
  auto value = parameter(query, name);
  if (!value) throw RequestError(name + ": required");
  return *value;
}

std::string kindFrom(const QueryParameters& query) {
  auto kind = requiredParameter(query, "kind");
  if (!bundle::TimelineWidgetBundle::widget(kind)) {
    std::string known;
    for (const auto& widget : bundle::TimelineWidgetBundle::body()) known += (known.empty() ? "" : ", ") + widget.kind;
    throw badValue("kind", "unknown widget", kind, "expected " + known);
  }
  return kind;
}

double coordinate(const QueryParameters& query, const std::string& name) {
  const auto text = requiredParameter(query, name);
  double value = 0;
  const auto* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value) ||
      std::fabs(value) > kLargestCoordinate) {
    throw badValue(name, "expected a decimal number of points, got", text);
  }
  return value;
}

host::HostEnvironment settingsFrom(const QueryParameters& query, const host::HostEnvironment& page) {
  host::HostEnvironment settings = page;
  for (const auto& [name, value] : query) {
    if (isSettingKey(name)) applySettingText(settings, name, value);
  }
  return settings;
}

}  // namespace

RenderRequest parseRenderRequest(const QueryParameters& query, const host::HostEnvironment& page) {
  checkNames(query, {"kind", "format", "v"});
  RenderRequest request;
  request.kind = kindFrom(query);
  const auto format = parameter(query, "format").value_or("png");
  if (format == "png") request.format = PictureFormat::png;
  else if (format == "svg") request.format = PictureFormat::svg;
  else if (format == "json") request.format = PictureFormat::json;
  else throw badValue("format", "unknown format", format, "expected png, svg or json");
  request.settings = settingsFrom(query, page);
  return request;
}

TapRequest parseTapRequest(const QueryParameters& query, const host::HostEnvironment& page) {
  checkNames(query, {"kind", "x", "y"});
  TapRequest request;
  request.kind = kindFrom(query);
  request.x = coordinate(query, "x");
  request.y = coordinate(query, "y");
  request.settings = settingsFrom(query, page);
  return request;
}

std::string formatName(PictureFormat format) {
  switch (format) {
    case PictureFormat::png: return "png";
    case PictureFormat::svg: return "svg";
    case PictureFormat::json: return "json";
  }
  return "png";
}

}  // namespace quillan::server
