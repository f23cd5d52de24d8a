#include "store/StoredValue.hpp"

#include <cmath>
#include <limits>

namespace quillan::store {
namespace {

// A REAL where an integer belongs, converted as SQLite converts one: toward
// zero, clamped to the 64-bit range; NaN (which SQLite itself never stores) is 0.
std::int64_t integerFromReal(double real) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (std::isnan(real)) return 0;
  // -2^63 is exact as a double; 2^63 is the first double above the range.
  if (real <= static_cast<double>(Limits::min())) return Limits::min();
  if (real >= -static_cast<double>(Limits::min())) return Limits::max();
  return static_cast<std::int64_t>(real);
}

}  // namespace

std::optional<platform::Date> decodeDate(const StoredValue& value) {
  if (const auto* real = std::get_if<double>(&value)) {
    return platform::Date::fromReferenceSeconds(*real);
  }
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    return platform::Date::fromReferenceSeconds(static_cast<double>(*integer));
  }
  return std::nullopt;
}

std::optional<std::string> decodeString(const StoredValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return std::nullopt;
}

std::optional<std::string> takeString(StoredValue& value) {
  if (auto* text = std::get_if<std::string>(&value)) return std::move(*text);
  return std::nullopt;
}

std::optional<UUID> decodeUUID(const StoredValue& value) {
  if (const auto* blob = std::get_if<std::vector<std::uint8_t>>(&value)) {
    return UUID::fromBytes(*blob);
  }
  return std::nullopt;
}

std::optional<std::int64_t> decodeForeignKey(const StoredValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
  return std::nullopt;
}

std::int64_t decodeInteger(const StoredValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
  if (const auto* real = std::get_if<double>(&value)) return integerFromReal(*real);
  return 0;
}

bool decodeBool(const StoredValue& value) { return decodeInteger(value) != 0; }

}  // namespace quillan::store
