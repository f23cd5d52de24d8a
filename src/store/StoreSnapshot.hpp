#pragma once

#include <filesystem>
#include <memory>

#include "store/SqliteDatabase.hpp"
#include "store/StoreModel.hpp"

namespace quillan::store {

// One consistent read of the store: a fresh read-only connection (the app may
// have replaced the files since the last read) inside one transaction, so the
// reader sees one committed state, WAL included, and never blocks the writer.
class StoreSnapshot {
 public:
  explicit StoreSnapshot(const std::filesystem::path& storePath);

  SqliteDatabase& database() { return database_; }
  const StoreModel& model() const { return model_; }
  void finish() { transaction_.commit(); }

 private:
  SqliteDatabase database_;
  SqliteTransaction transaction_;
  StoreModel model_;
};

}  // namespace quillan::store
