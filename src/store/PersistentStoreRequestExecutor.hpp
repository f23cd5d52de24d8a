#pragma once

#include "store/BatchDeleteRequest.hpp"
#include "store/PersistentStore.hpp"
#include "store/PersistentStoreResult.hpp"
#include "store/Result.hpp"

namespace quillan::store {

// Runs store requests for a context. The SQLite executor is the real one;
// tests put others in to reach failures and odd result shapes.
class PersistentStoreRequestExecutor {
 public:
  virtual ~PersistentStoreRequestExecutor() = default;
  virtual Result<PersistentStoreResult> execute(const BatchDeleteRequest& request, const PersistentStore& store) = 0;
};

}  // namespace quillan::store
