#include "store/SqliteDatabase.hpp"

#include <sqlite3.h>

namespace quillan::store {
namespace {

[[noreturn]] void fail(sqlite3* database, int code) {
  const char* message = database ? sqlite3_errmsg(database) : sqlite3_errstr(code);
  throw SqliteException(code, message ? message : sqlite3_errstr(code));
}

void check(sqlite3* database, int code) {
  if (code != SQLITE_OK) fail(database, code);
}

std::string quotedIdentifier(std::string_view name) {
  std::string quoted = "\"";
  for (char c : name) {
    if (c == '"') quoted.push_back('"');
    quoted.push_back(c);
  }
  return quoted + "\"";
}

}  // namespace

SqliteStatement::SqliteStatement(sqlite3* database, std::string_view sql) : database_(database) {
  check(database_, sqlite3_prepare_v2(database_, sql.data(), static_cast<int>(sql.size()), &statement_, nullptr));
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(statement_); }

SqliteStatement::SqliteStatement(SqliteStatement&& other) noexcept
    : database_(other.database_), statement_(other.statement_) {
  other.statement_ = nullptr;
}

void SqliteStatement::bind(int index, std::int64_t value) {
  check(database_, sqlite3_bind_int64(statement_, index, value));
}

void SqliteStatement::bind(int index, double value) { check(database_, sqlite3_bind_double(statement_, index, value)); }

void SqliteStatement::bind(int index, std::string_view text) {
  check(database_, sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT));
}

void SqliteStatement::bind(int index, const Bytes& blob) {
  check(database_, sqlite3_bind_blob(statement_, index, blob.data(), static_cast<int>(blob.size()), SQLITE_TRANSIENT));
}

void SqliteStatement::bindNull(int index) { check(database_, sqlite3_bind_null(statement_, index)); }

bool SqliteStatement::step() {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  fail(database_, code);
}

void SqliteStatement::reset() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

bool SqliteStatement::isNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

bool SqliteStatement::isInteger(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_INTEGER; }

bool SqliteStatement::isNumber(int column) const {
  const int type = sqlite3_column_type(statement_, column);
  return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

std::int64_t SqliteStatement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

double SqliteStatement::real(int column) const { return sqlite3_column_double(statement_, column); }

std::string SqliteStatement::text(int column) const {
  const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  const int size = sqlite3_column_bytes(statement_, column);
  return data ? std::string(data, static_cast<std::size_t>(size)) : std::string();
}

Bytes SqliteStatement::blob(int column) const {
  const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement_, column));
  const int size = sqlite3_column_bytes(statement_, column);
  return data ? Bytes(data, data + size) : Bytes();
}

namespace {

// A reader here makes one pass over a table and a few hundred lookups by key.
// The pass never reads a page twice, and a lookup's path is a handful of
// pages, so SQLite's default 2 MB cache only costs: about 500 page buffers
// allocated and first touched per connection, a tenth of a widget's
// evaluation (a third in a forked worker child). Only a tuning: a failure
// leaves the default.
void limitPageCache(sqlite3* database) {
  sqlite3_exec(database, "PRAGMA cache_size = -128", nullptr, nullptr, nullptr);
}

}  // namespace

SqliteDatabase::SqliteDatabase(const std::filesystem::path& path, Mode mode, int busyTimeoutMilliseconds) {
  int flags = SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
  std::string name;
  if (mode == Mode::readOnly || mode == Mode::readOnlyImmutable) {
    flags |= SQLITE_OPEN_READONLY;
    name = readOnlyURI(path, mode == Mode::readOnlyImmutable);
  } else {
    flags |= SQLITE_OPEN_READWRITE | (mode == Mode::readWriteCreate ? SQLITE_OPEN_CREATE : 0);
    name = path.string();
  }
  const int code = sqlite3_open_v2(name.c_str(), &database_, flags, nullptr);
  if (code != SQLITE_OK) {
    const std::string message = database_ ? sqlite3_errmsg(database_) : sqlite3_errstr(code);
    sqlite3_close(database_);
    database_ = nullptr;
    throw SqliteException(code, message);
  }
  sqlite3_extended_result_codes(database_, 0);
  sqlite3_busy_timeout(database_, busyTimeoutMilliseconds);
  if (mode == Mode::readOnly || mode == Mode::readOnlyImmutable) limitPageCache(database_);
}

SqliteDatabase::~SqliteDatabase() { sqlite3_close(database_); }

void SqliteDatabase::execute(std::string_view sql) {
  const std::string text(sql);
  check(database_, sqlite3_exec(database_, text.c_str(), nullptr, nullptr, nullptr));
}

SqliteStatement SqliteDatabase::prepare(std::string_view sql) { return SqliteStatement(database_, sql); }

std::vector<std::string> SqliteDatabase::columnNames(std::string_view table) {
  auto statement = prepare("PRAGMA table_info(" + quotedIdentifier(table) + ")");
  std::vector<std::string> names;
  while (statement.step()) names.push_back(statement.text(1));
  return names;
}

bool SqliteDatabase::hasTable(std::string_view table) {
  auto statement = prepare("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1");
  statement.bind(1, table);
  return statement.step();
}

std::int64_t SqliteDatabase::changes() const { return sqlite3_changes64(database_); }

std::string SqliteDatabase::readOnlyURI(const std::filesystem::path& path, bool immutable) {
  std::string uri = "file:";
  for (char c : std::filesystem::absolute(path).string()) {
    switch (c) {
      case '%': uri += "%25"; break;
      case '?': uri += "%3f"; break;
      case '#': uri += "%23"; break;
      default: uri.push_back(c);
    }
  }
  return uri + (immutable ? "?mode=ro&immutable=1" : "?mode=ro");
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database, std::string_view begin) : database_(database) {
  database_.execute(begin);
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  try {
    database_.execute("ROLLBACK");
  } catch (const SqliteException&) {
    // Nothing left to undo: SQLite already rolled back after the failure.
  }
}

void SqliteTransaction::commit() {
  database_.execute("COMMIT");
  open_ = false;
}

}  // namespace quillan::store
