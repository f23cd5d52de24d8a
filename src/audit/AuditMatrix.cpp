#include "audit/AuditMatrix.hpp"

#include <sstream>

#include "audit/IcuLocales.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "hosting/UsageError.hpp"
#include "platform/Locale.hpp"
#include "views/EnumNames.hpp"
#include "views/Environment.hpp"

namespace quillan::audit {

namespace {

std::vector<std::string> commaSeparated(const std::string& given, std::string_view option) {
  std::vector<std::string> names;
  std::stringstream stream(given);
  std::string name;
  while (std::getline(stream, name, ',')) {
    if (name.empty()) throw hosting::badOption(option, "empty name in the list", given);
    names.push_back(name);
  }
  if (names.empty()) throw hosting::badOption(option, "no names given", given);
  return names;
}

template <views::NamedEnum E>
std::vector<std::string> allNamesOf() {
  std::vector<std::string> names;
  for (const auto& row : enumNames(E{})) names.emplace_back(row.name);
  return names;
}

template <views::NamedEnum E>
std::vector<std::string> parseEnumList(const std::string& given, std::string_view option, std::string_view what) {
  if (given == "all") return allNamesOf<E>();
  const auto names = commaSeparated(given, option);
  for (const auto& name : names)
    if (!views::fromString<E>(name))
      throw hosting::badOption(option, std::string("unknown ") + std::string(what), name,
                               "expected all or " + views::acceptedNames<E>());
  return names;
}

}  // namespace

std::vector<std::string> parseKinds(const std::vector<std::string>& given) {
  std::vector<std::string> kinds;
  if (given.empty()) {
    for (const auto& widget : bundle::TimelineWidgetBundle::body()) kinds.push_back(widget.kind);
    return kinds;
  }
  for (const auto& kind : given) {
    if (!bundle::TimelineWidgetBundle::widget(kind)) throw hosting::badOption("--kind", "unknown widget kind", kind);
    kinds.push_back(kind);
  }
  return kinds;
}

std::vector<std::string> parseLocales(const std::string& given) {
  if (given == "all") return icuLocaleIdentifiers();
  const auto names = commaSeparated(given, "--locales");
  for (const auto& name : names)
    if (!platform::Locale::named(name)) throw hosting::badOption("--locales", "unknown locale", name);
  return names;
}

std::vector<std::string> parseDynamicTypes(const std::string& given) {
  return parseEnumList<views::DynamicTypeSize>(given, "--dynamic-types", "text size");
}

std::vector<std::string> parseColorSchemes(const std::string& given) {
  return parseEnumList<views::ColorScheme>(given, "--color-schemes", "color scheme");
}

std::vector<std::string> parseRenderingModes(const std::string& given) {
  return parseEnumList<views::WidgetRenderingMode>(given, "--rendering-modes", "rendering mode");
}

std::size_t caseCount(const AuditMatrix& matrix) {
  return matrix.kinds.size() * matrix.locales.size() * matrix.dynamicTypes.size() * matrix.colorSchemes.size() *
         matrix.renderingModes.size();
}

AuditCase caseAt(const AuditMatrix& matrix, std::size_t index) {
  // The last list varies fastest: peel the index off from the end.
  const auto next = [&index](const std::vector<std::string>& values) -> const std::string& {
    const auto& value = values[index % values.size()];
    index /= values.size();
    return value;
  };
  AuditCase auditCase;
  auditCase.renderingMode = next(matrix.renderingModes);
  auditCase.colorScheme = next(matrix.colorSchemes);
  auditCase.dynamicType = next(matrix.dynamicTypes);
  auditCase.locale = next(matrix.locales);
  auditCase.kind = next(matrix.kinds);
  return auditCase;
}

}  // namespace quillan::audit
