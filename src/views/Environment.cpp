#include "views/Environment.hpp"

#include <charconv>

namespace quillan::views {
namespace {

template <NamedEnum E>
E parseNamed(std::string_view text, std::string_view what) {
  if (const auto value = fromString<E>(text)) return *value;
  throw EnvironmentParseError("invalid " + std::string(what) + " \"" + std::string(text) + "\" (expected " +
                              acceptedNames<E>() + ")");
}

// A run of decimal digits and nothing else; from_chars alone would accept a
// prefix ("17x") or a sign.
std::optional<int> parseNumber(std::string_view digits) {
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc() || end != digits.data() + digits.size() || digits.front() == '-' || digits.front() == '+') {
    return std::nullopt;
  }
  return value;
}

}  // namespace

std::string PlatformVersion::toString() const { return std::to_string(major) + "." + std::to_string(minor); }

ColorScheme parseColorScheme(std::string_view text) { return parseNamed<ColorScheme>(text, "color scheme"); }

WidgetRenderingMode parseRenderingMode(std::string_view text) {
  return parseNamed<WidgetRenderingMode>(text, "rendering mode");
}

WidgetFamily parseWidgetFamily(std::string_view text) { return parseNamed<WidgetFamily>(text, "widget family"); }

LayoutDirection parseLayoutDirection(std::string_view text) {
  return parseNamed<LayoutDirection>(text, "layout direction");
}

DynamicTypeSize parseDynamicTypeSize(std::string_view text) {
  return parseNamed<DynamicTypeSize>(text, "dynamic type size");
}

PlatformVersion parsePlatformVersion(std::string_view text) {
  const auto dot = text.find('.');
  const auto major = parseNumber(text.substr(0, dot));
  const auto minor = dot == std::string_view::npos ? std::optional<int>(0) : parseNumber(text.substr(dot + 1));
  if (!major || !minor) {
    throw EnvironmentParseError("invalid platform version \"" + std::string(text) +
                                "\" (expected MAJOR.MINOR, e.g. 17.0)");
  }
  return {*major, *minor};
}

}  // namespace quillan::views
