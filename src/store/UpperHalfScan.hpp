#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "store/KeepRanges.hpp"
#include "store/StoredValue.hpp"

namespace quillan::store {

// The upper part of a judged scan of a date column, on a connection and a
// thread of its own, so that a large journal is judged on two cores: the rows
// whose primary key is above `above` and whose date `ranges` do not rule out,
// with that date as the scan's test would be handed it. The test itself is
// never asked here: the caller asks it about these rows, in their order, after
// its own part, as one scan would have.
//
// The caller proves that both connections read one state of the journal:
// the connection is opened by name, and its read has begun once begun()
// returns.
class UpperHalfScan {
 public:
  struct Row {
    std::int64_t primaryKey;
    StoredValue date;
  };

  UpperHalfScan(std::filesystem::path journal, std::string table, std::string column, std::int64_t above,
                const KeepRanges& ranges);
  // Waits for the thread, whose rows are then dropped.
  ~UpperHalfScan();
  UpperHalfScan(const UpperHalfScan&) = delete;
  UpperHalfScan& operator=(const UpperHalfScan&) = delete;

  // Waits until the thread's read has begun; false when it could not begin.
  bool begun();
  // Waits for the rows, in primary-key order: those read before a failure,
  // if the scan failed, so that the test can be asked about them first.
  std::vector<Row> rows();
  // Once rows() has returned: raises what stopped the scan, if anything did.
  void rethrowFailure() const;
  // How many rows the scan looked at, once rows() has returned.
  std::size_t scanned() const { return scanned_; }

 private:
  void scan(const std::filesystem::path& journal, const std::string& table, const std::string& column,
            std::int64_t above, const KeepRanges& ranges);

  std::promise<bool> begunPromise_;
  std::future<bool> begun_;
  std::vector<Row> rows_;
  std::size_t scanned_ = 0;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace quillan::store
