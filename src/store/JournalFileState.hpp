#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace quillan::store {

// What the files of an SQLite journal say about its committed state, read
// without SQLite: the identity of the main file (device, inode, size and
// modification time) and its header (whose change counter every commit
// in rollback mode moves), the identity and header of the write-ahead log
// (its salts change whenever the log starts over) and the log's index header
// in -shm (frame count, checksums and change counter of the last commit: what
// SQLite's own data_version follows). Two equal states read at two moments
// mean no commit, rewrite or replacement happened in between. The files stay
// open between reads (see KeptFile), so reading the state never releases the
// locks of the process's own connections to the journal.
//
// Absent (nullopt) when nothing can be vouched for: no journal, a rollback
// journal left to replay, or an index header caught half-written.
struct JournalFileState {
  std::string bytes;  // the fields above, compared as one block

  friend bool operator==(const JournalFileState&, const JournalFileState&) = default;
};

std::optional<JournalFileState> journalFileState(const std::filesystem::path& journal);

}  // namespace quillan::store
