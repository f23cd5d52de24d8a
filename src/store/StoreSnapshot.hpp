#pragma once

#include <filesystem>
#include <memory>

#include "store/SqliteDatabase.hpp"
#include "store/StoreModel.hpp"

namespace quillan::store {

// One consistent read of the store inside one transaction, so the reader sees
// one committed state, WAL included, and never blocks the writer.
class StoreSnapshot {
 public:
  // A fresh read-only connection: the app may have replaced the files since the
  // last read. It adds no file beside the journal: a WAL journal the app has
  // closed, and one in a folder the reader cannot write with no -wal or -shm
  // to share, are read as immutable files (see readOnlyModeFor).
  static std::unique_ptr<StoreSnapshot> open(const std::filesystem::path& storePath);
  // A read through a connection kept open by the caller.
  static std::unique_ptr<StoreSnapshot> on(std::shared_ptr<SqliteDatabase> connection);

  SqliteDatabase& database() { return *database_; }
  const std::shared_ptr<SqliteDatabase>& connection() const { return database_; }
  const StoreModel& model() const { return model_; }
  void finish() { transaction_.commit(); }

 private:
  explicit StoreSnapshot(std::shared_ptr<SqliteDatabase> connection);

  std::shared_ptr<SqliteDatabase> database_;
  SqliteTransaction transaction_;
  StoreModel model_;
};

}  // namespace quillan::store
