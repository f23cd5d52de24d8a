#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::views {

// One row of an enum's name table. Each enum of the view model declares, next
// to itself, `constexpr auto enumNames(E)` returning a std::array of these; the
// templates below find it by argument-dependent lookup, so JSON, the command
// line and the tests all share one spelling per value.
template <typename E>
struct EnumName {
  E value;
  std::string_view name;
};

template <typename E>
concept NamedEnum = requires(E e) {
  enumNames(e);
};

template <NamedEnum E>
constexpr std::string_view toString(E value) {
  for (const auto& row : enumNames(E{})) {
    if (row.value == value) return row.name;
  }
  return "?";
}

template <NamedEnum E>
constexpr std::optional<E> fromString(std::string_view name) {
  for (const auto& row : enumNames(E{})) {
    if (row.name == name) return row.value;
  }
  return std::nullopt;
}

// "a, b or c": the accepted names, for error messages.
template <NamedEnum E>
std::string acceptedNames() {
  const auto table = enumNames(E{});
  std::string list;
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (i > 0) list += (i + 1 == table.size()) ? " or " : ", ";
    list += table[i].name;
  }
  return list;
}

}  // namespace quillan::views
