#include "store/SqliteRowTest.hpp"

#include <sqlite3.h>

namespace quillan::store {

bool SqliteArgument::isNull() const { return sqlite3_value_type(value_) == SQLITE_NULL; }

std::int64_t SqliteArgument::integer() const { return sqlite3_value_int64(value_); }

double SqliteArgument::real() const { return sqlite3_value_double(value_); }

std::string SqliteArgument::text() const {
  const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(value_));
  return data ? std::string(data, static_cast<std::size_t>(sqlite3_value_bytes(value_))) : std::string();
}

Bytes SqliteArgument::blob() const {
  const auto* data = static_cast<const std::uint8_t*>(sqlite3_value_blob(value_));
  const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value_));
  return data ? Bytes(data, data + size) : Bytes();
}

SqliteRowTest::SqliteRowTest(SqliteDatabase& database, std::string name, Test test, const KeepRanges* ranges)
    : database_(database), name_(std::move(name)), test_(std::move(test)), ranges_(ranges) {
  // Not deterministic: SQLite must ask about every row, once, in scan order.
  const int code = sqlite3_create_function_v2(database_.handle(), name_.c_str(), 1, SQLITE_UTF8 | SQLITE_DIRECTONLY,
                                              this, &SqliteRowTest::call, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw SqliteException(code, sqlite3_errmsg(database_.handle()));
}

SqliteRowTest::~SqliteRowTest() {
  sqlite3_create_function_v2(database_.handle(), name_.c_str(), 1, SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr, nullptr,
                             nullptr, nullptr, nullptr);
}

void SqliteRowTest::rethrowFailure() const {
  if (failure_) std::rethrow_exception(failure_);
}

bool SqliteRowTest::ruledOut(sqlite3_value* value) {
  if (!ranges_) return false;
  const int type = sqlite3_value_type(value);
  // The number the test would see: SqliteArgument::real() reads it alike.
  return (type == SQLITE_INTEGER || type == SQLITE_FLOAT) && !ranges_->mayKeep(sqlite3_value_double(value), rangeHint_);
}

void SqliteRowTest::call(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
  auto* self = static_cast<SqliteRowTest*>(sqlite3_user_data(context));
  ++self->calls_;
  if (self->ruledOut(values[0])) {
    sqlite3_result_int(context, 0);
    return;
  }
  // Nothing may unwind through SQLite's frames.
  try {
    sqlite3_result_int(context, self->test_(SqliteArgument(values[0])) ? 1 : 0);
  } catch (...) {
    self->failure_ = std::current_exception();
    sqlite3_result_error(context, "the row test failed", -1);
  }
}

}  // namespace quillan::store
