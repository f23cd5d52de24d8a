#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/Date.hpp"
#include "store/UUID.hpp"

namespace quillan::store {

// One column value of a fetched row, as SQLite handed it out.
using StoredValue = std::variant<std::monostate, std::int64_t, double, std::string, std::vector<std::uint8_t>>;

// Decoders from a column value to an attribute type. Dates are read as doubles
// whatever the storage class: whole-second dates come back as INTEGER because
// TIMESTAMP columns have NUMERIC affinity.
std::optional<platform::Date> decodeDate(const StoredValue& value);
std::optional<std::string> decodeString(const StoredValue& value);
// decodeString, moving the text out of `value` rather than copying it.
std::optional<std::string> takeString(StoredValue& value);
std::optional<UUID> decodeUUID(const StoredValue& value);
std::optional<std::int64_t> decodeForeignKey(const StoredValue& value);
// Non-optional scalars: NULL (the framework never writes one, CloudKit might) reads as 0.
std::int64_t decodeInteger(const StoredValue& value);
bool decodeBool(const StoredValue& value);

}  // namespace quillan::store
