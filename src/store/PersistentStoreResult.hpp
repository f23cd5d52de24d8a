#pragma once

#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "store/ObjectID.hpp"

namespace quillan::store {

// The outcome of a batch delete; `result` holds what the request's result type
// asked for: the deleted ids, their count, or a success flag.
struct BatchDeleteResult {
  using Value = std::variant<std::vector<ObjectID>, std::int64_t, bool>;
  std::optional<Value> result;
};

// A store result of any other kind.
struct UnrecognizedStoreResult {};

using PersistentStoreResult = std::variant<BatchDeleteResult, UnrecognizedStoreResult>;

}  // namespace quillan::store
