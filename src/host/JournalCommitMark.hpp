#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "store/KeptFile.hpp"

namespace quillan::host {

// What the journal's files say about its last finished commit, read without
// SQLite, so that the watcher can tell a commit that is done from one still
// being written:
// - while the write-ahead log holds commits, the main file's identity (device
//   and inode) and the log's index header in -shm, which a commit rewrites as
//   its last step (frame count, checksums, change counter), and which a
//   checkpoint copying the log into the main file leaves as it is;
// - otherwise the main file's identity, size, modification time and header
//   (whose change counter every commit in rollback mode moves), so a journal
//   rewritten in place moves it too.
// A journal replaced by a rename is a new inode either way.
struct JournalCommitMark {
  std::string file;        // the main file's device and inode
  std::string lastCommit;  // the log index's header, or the main file's size, time and header
  bool inLog = false;      // lastCommit is the log index's header

  friend bool operator==(const JournalCommitMark&, const JournalCommitMark&) = default;
};

// Whether `later` shows a commit that `earlier` did not, or another journal.
// The log's commits checkpointed into the main file and the log then emptied
// or removed (the app closing its last connection) is no new commit.
bool committedSince(const JournalCommitMark& earlier, const JournalCommitMark& later);

// Reads the mark of one journal, keeping its files open between reads (see
// store::KeptFile), so it may run beside the process's own connections to it.
class JournalCommitMarkReader {
 public:
  explicit JournalCommitMarkReader(std::filesystem::path journal);
  // Absent when nothing can be vouched for: no journal, a rollback journal
  // beside it (a commit in rollback mode in progress), an index header caught
  // half-written or not yet made, or a main file shorter or longer than its
  // header says (being written in place).
  std::optional<JournalCommitMark> read();

 private:
  std::filesystem::path journal_;
  std::filesystem::path index_;
  std::filesystem::path rollbackJournal_;
  store::KeptFile main_;
  store::KeptFile indexFile_;
};

}  // namespace quillan::host
