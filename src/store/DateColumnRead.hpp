#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/JournalFileState.hpp"

namespace quillan::store {

// Every row's primary key and one date column of one table, in primary-key
// order, as a judged scan reads them, tied to the journal state it was read
// at. A process that evaluates widgets one after another keeps it and hands
// it to the children it forks, so a child whose own snapshot of the journal
// is proved to be that state judges the dates in memory instead of scanning
// the table again (see ManagedObjectContext::readObjects).
class DateColumnRead {
 public:
  enum class Storage : std::uint8_t { null, number, other };
  struct Row {
    std::int64_t primaryKey;
    double value;  // as SQLite reads the stored value as a number; 0 when null
    Storage storage;
  };

  // Reads the column of `attribute` of `entity` from `journal` in one
  // snapshot, between two equal readings of the journal's file state;
  // nullopt when the state cannot be vouched for, the journal has no such
  // table or column, or a whole-number date is too large to compare as a
  // double exactly. Throws SqliteException when the journal cannot be read.
  static std::optional<DateColumnRead> read(const std::filesystem::path& journal, std::string_view entity,
                                            std::string_view attribute);

  // The read holds what a snapshot of `journal` now would show of `column`
  // of `table`: the same journal, table and column, and the journal's files
  // are still in the state they were read at.
  bool isCurrentFor(const std::filesystem::path& journal, std::string_view table, std::string_view column) const;

  // This read with `added` after its rows, tied to `state`: what reading a
  // journal into which only those rows were inserted since gives. Nullopt
  // when an added key is not above every key before it (the order would
  // differ) or a value is not one to compare in memory (not finite, or a
  // whole number too large for a double).
  std::optional<DateColumnRead> withRowsAdded(const std::vector<Row>& added, JournalFileState state) const;

  const std::filesystem::path& journal() const { return journal_; }
  const JournalFileState& state() const { return state_; }
  const std::vector<Row>& rows() const { return rows_; }

  // A byte form for the pipe between a reading child and its parent.
  std::string encode() const;
  static std::optional<DateColumnRead> decode(std::string_view bytes);

 private:
  std::filesystem::path journal_;
  std::string table_;
  std::string column_;
  JournalFileState state_;
  std::vector<Row> rows_;
};

// The read this process was handed by the process it was forked from, or
// none: judged scans use it only when it is current for their journal.
void useKnownDateColumn(std::shared_ptr<const DateColumnRead> read);
const std::shared_ptr<const DateColumnRead>& knownDateColumn();

}  // namespace quillan::store
