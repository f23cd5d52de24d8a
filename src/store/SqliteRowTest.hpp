#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>

#include "store/KeepRanges.hpp"
#include "store/SqliteDatabase.hpp"

struct sqlite3_value;
struct sqlite3_context;

namespace quillan::store {

// The value a SQL function is called with, read as a statement's column is.
class SqliteArgument {
 public:
  explicit SqliteArgument(sqlite3_value* value) : value_(value) {}

  bool isNull() const;
  std::int64_t integer() const;
  double real() const;
  std::string text() const;
  Bytes blob() const;

 private:
  sqlite3_value* value_;
};

// A one-argument SQL function `name(x)`, defined on a connection while this
// lives, that answers `test(x)`. A scan that judges rows by one column calls
// it in its WHERE clause, so SQLite hands back only the kept rows: returning
// every row to the caller costs more than the scan itself at a million rows.
//
// It can be called only from statements this process prepares, never from a
// view or trigger in the journal's schema. What the test throws ends the
// statement; `rethrowFailure()` raises it again in place of SQLite's error.
//
// With `ranges`, a number they rule out (read as a double, as a date is) is
// answered no without calling `test`, though it still counts as asked: the
// few rows they leave cost the test's own price, the rest next to nothing.
class SqliteRowTest {
 public:
  using Test = std::function<bool(const SqliteArgument&)>;

  SqliteRowTest(SqliteDatabase& database, std::string name, Test test, const KeepRanges* ranges = nullptr);
  ~SqliteRowTest();
  SqliteRowTest(const SqliteRowTest&) = delete;
  SqliteRowTest& operator=(const SqliteRowTest&) = delete;

  const std::string& name() const { return name_; }
  // How many rows the test was asked about.
  std::size_t calls() const { return calls_; }
  void rethrowFailure() const;

 private:
  static void call(sqlite3_context* context, int count, sqlite3_value** values);
  bool ruledOut(sqlite3_value* value);

  SqliteDatabase& database_;
  std::string name_;
  Test test_;
  const KeepRanges* ranges_;
  std::size_t rangeHint_ = 0;
  std::size_t calls_ = 0;
  std::exception_ptr failure_;
};

}  // namespace quillan::store
