#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace quillan::store {

// An SQLite failure inside the store; converted to a platform Error where it
// leaves the store's public API.
class SqliteException : public std::runtime_error {
 public:
  SqliteException(int code, std::string message) : std::runtime_error(message), code_(code) {}
  int code() const { return code_; }

 private:
  int code_;
};

using Bytes = std::vector<std::uint8_t>;

// One prepared statement; columns are read by index from the current row.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, std::string_view sql);
  ~SqliteStatement();
  SqliteStatement(SqliteStatement&& other) noexcept;
  SqliteStatement& operator=(SqliteStatement&&) = delete;
  SqliteStatement(const SqliteStatement&) = delete;

  void bind(int index, std::int64_t value);
  void bind(int index, double value);
  void bind(int index, std::string_view text);
  void bind(int index, const Bytes& blob);
  void bindNull(int index);

  // Advances to the next row; false when the statement is done.
  bool step();
  void reset();

  bool isNull(int column) const;
  bool isInteger(int column) const;
  bool isNumber(int column) const;  // stored as an integer or a real
  std::int64_t integer(int column) const;
  double real(int column) const;
  std::string text(int column) const;
  Bytes blob(int column) const;

 private:
  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
};

// An open connection. Read-only connections open the file through a
// `file:...?mode=ro` URI so that they never create, checkpoint or rewrite it.
// An immutable one (`&immutable=1`) also takes no locks and ignores -wal and
// -shm: only for a journal that no writer has open.
class SqliteDatabase {
 public:
  enum class Mode { readOnly, readOnlyImmutable, readWrite, readWriteCreate };

  SqliteDatabase(const std::filesystem::path& path, Mode mode, int busyTimeoutMilliseconds = 1000);
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  void execute(std::string_view sql);
  SqliteStatement prepare(std::string_view sql);
  std::vector<std::string> columnNames(std::string_view table);
  bool hasTable(std::string_view table);
  std::int64_t changes() const;
  sqlite3* handle() const { return database_; }

  // "file:<percent-encoded path>?mode=ro", with "&immutable=1" if asked
  static std::string readOnlyURI(const std::filesystem::path& path, bool immutable = false);

 private:
  sqlite3* database_ = nullptr;
};

// BEGIN on construction; COMMIT on commit(), ROLLBACK when dropped uncommitted.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteDatabase& database, std::string_view begin = "BEGIN");
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void commit();

 private:
  SqliteDatabase& database_;
  bool open_ = true;
};

}  // namespace quillan::store
