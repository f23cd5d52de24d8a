#include "store/StoreSnapshot.hpp"

#include <sqlite3.h>

#include <fstream>

namespace quillan::store {
namespace {

bool exists(const std::filesystem::path& path, const char* suffix) {
  std::error_code ignored;
  return std::filesystem::exists(path.string() + suffix, ignored);
}

// A read-only connection to a WAL journal needs its -shm: shared if it is
// there, made beside the journal if the folder lets it. When neither is
// possible SQLite refuses the read. If the app has closed the journal cleanly
// (no -wal holding commits, no rollback journal to replay) the main file is
// the whole journal and can be read as immutable; otherwise it cannot be read
// without losing commits, and the failure stands.
bool readsAsImmutable(const std::filesystem::path& path, const SqliteException& failure) {
  if (failure.code() != SQLITE_READONLY && failure.code() != SQLITE_CANTOPEN) return false;
  return std::filesystem::exists(path) && !exists(path, "-wal") && !exists(path, "-journal");
}

// Bytes 18 and 19 of an SQLite file's header: the format versions for
// writing and reading, 2 for a journal in WAL mode.
bool inWalMode(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  char header[20] = {};
  file.read(header, sizeof header);
  return file && header[18] == 2 && header[19] == 2;
}

// Reading a WAL journal takes a -wal and a -shm, and a read-only connection
// makes both when they are missing and leaves them behind (only the last
// writer to close removes them): a journal the app has closed would gain two
// files with each read. Closed cleanly, its main file is the whole journal,
// so it is read as immutable instead, which needs neither. A rollback
// journal's readers make no files; the app's -wal, once there, is shared.
SqliteDatabase::Mode readOnlyModeFor(const std::filesystem::path& path) {
  const bool closedCleanly = !exists(path, "-wal") && !exists(path, "-journal");
  return closedCleanly && inWalMode(path) ? SqliteDatabase::Mode::readOnlyImmutable : SqliteDatabase::Mode::readOnly;
}

}  // namespace

StoreSnapshot::StoreSnapshot(std::shared_ptr<SqliteDatabase> connection)
    : database_(std::move(connection)), transaction_(*database_), model_(StoreModel::read(*database_)) {}

std::unique_ptr<StoreSnapshot> StoreSnapshot::open(const std::filesystem::path& storePath) {
  try {
    return on(std::make_shared<SqliteDatabase>(storePath, readOnlyModeFor(storePath)));
  } catch (const SqliteException& failure) {
    if (!readsAsImmutable(storePath, failure)) throw;
    return on(std::make_shared<SqliteDatabase>(storePath, SqliteDatabase::Mode::readOnlyImmutable));
  }
}

std::unique_ptr<StoreSnapshot> StoreSnapshot::on(std::shared_ptr<SqliteDatabase> connection) {
  return std::unique_ptr<StoreSnapshot>(new StoreSnapshot(std::move(connection)));
}

}  // namespace quillan::store
