#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace quillan::store {

// A managed object's permanent identity within one store: its entity and its
// row's primary key (Z_PK).
struct ObjectID {
  std::string entityName;
  std::int64_t primaryKey = 0;

  auto operator<=>(const ObjectID&) const = default;
};

}  // namespace quillan::store
