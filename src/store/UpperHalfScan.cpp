#include "store/UpperHalfScan.hpp"

#include "store/ColumnValue.hpp"
#include "store/SqliteRowTest.hpp"
#include "store/StoreSnapshot.hpp"

namespace quillan::store {

UpperHalfScan::UpperHalfScan(std::filesystem::path journal, std::string table, std::string column, std::int64_t above,
                             const KeepRanges& ranges)
    : begun_(begunPromise_.get_future()),
      thread_([this, journal = std::move(journal), table = std::move(table), column = std::move(column), above,
               &ranges] { scan(journal, table, column, above, ranges); }) {}

UpperHalfScan::~UpperHalfScan() {
  if (thread_.joinable()) thread_.join();
}

bool UpperHalfScan::begun() { return begun_.get(); }

std::vector<UpperHalfScan::Row> UpperHalfScan::rows() {
  if (thread_.joinable()) thread_.join();
  return std::move(rows_);
}

void UpperHalfScan::rethrowFailure() const {
  if (failure_) std::rethrow_exception(failure_);
}

void UpperHalfScan::scan(const std::filesystem::path& journal, const std::string& table, const std::string& column,
                         std::int64_t above, const KeepRanges& ranges) {
  bool started = false;
  try {
    auto snapshot = StoreSnapshot::open(journal);
    // The scan reads each page once: a small cache keeps the second
    // connection from adding its own megabytes to the process.
    snapshot->database().execute("PRAGMA cache_size = -128");
    started = true;
    begunPromise_.set_value(true);
    SqliteRowTest undecided(
        snapshot->database(), "quillan_may_keep_row", [](const SqliteArgument&) { return true; }, &ranges);
    auto statement = snapshot->database().prepare("SELECT Z_PK, " + column + " FROM " + table +
                                                  " WHERE Z_PK > ?1 AND " + undecided.name() + "(" + column +
                                                  ") ORDER BY Z_PK");
    statement.bind(1, above);
    while (statement.step()) {
      rows_.push_back({statement.integer(0), storedValue(SqliteColumn{statement, 1}, AttributeKind::date)});
    }
    scanned_ = undecided.calls();
    snapshot->finish();
  } catch (...) {
    if (!started) {
      begunPromise_.set_value(false);
      return;
    }
    failure_ = std::current_exception();
  }
}

}  // namespace quillan::store
