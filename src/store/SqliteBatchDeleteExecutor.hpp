#pragma once

#include "store/PersistentStoreRequestExecutor.hpp"

namespace quillan::store {

// Executes batch deletes on a writable connection of its own (the widgets'
// reads stay read-only): one IMMEDIATE transaction that deletes the matching
// rows and nullifies the to-one keys that pointed at them. Z_MAX is left alone,
// so primary keys are never reused.
class SqliteBatchDeleteExecutor : public PersistentStoreRequestExecutor {
 public:
  Result<PersistentStoreResult> execute(const BatchDeleteRequest& request, const PersistentStore& store) override;
};

}  // namespace quillan::store
