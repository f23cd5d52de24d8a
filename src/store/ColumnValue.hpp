#pragma once

#include <variant>

#include "store/EntityDescription.hpp"
#include "store/SqliteDatabase.hpp"
#include "store/StoredValue.hpp"

namespace quillan::store {

// One column of a statement's current row, read as a SqliteArgument is.
struct SqliteColumn {
  const SqliteStatement& statement;
  int column;
  bool isNull() const { return statement.isNull(column); }
  std::int64_t integer() const { return statement.integer(column); }
  double real() const { return statement.real(column); }
  std::string text() const { return statement.text(column); }
  Bytes blob() const { return statement.blob(column); }
};

// A stored value as the attribute's kind reads it, from a column or from the
// argument of the scan's SQL test: both must decode alike, or the test would
// judge a value the fetched object does not have.
template <typename Value>
StoredValue storedValue(const Value& value, AttributeKind kind) {
  if (value.isNull()) return std::monostate{};
  switch (kind) {
    case AttributeKind::date: return value.real();
    case AttributeKind::string: return value.text();
    case AttributeKind::uuid:
    case AttributeKind::binary: return value.blob();
    case AttributeKind::integer:
    case AttributeKind::boolean:
    case AttributeKind::toOne: return value.integer();
  }
  return std::monostate{};
}

}  // namespace quillan::store
