#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "fixtures/JournalAppender.hpp"
#include "hosting/ScratchFolder.hpp"
#include "platform/Date.hpp"

namespace quillan::replay {

// A copy of the user's journal in a temporary folder of its own, for a replay
// that writes notes as the app would. The user's files are only read: a closed
// journal byte by byte (an open one too while its -wal is empty), an open one
// with pages in its -wal through SQLite's online backup (so they come along and
// the writer is never disturbed). The copy and its folder are removed with the object, and by the
// signals that end the command (see ScratchFolder): a copy of the user's notes
// never outlives the command.
class PrivateJournal {
 public:
  // Copies `journal` (a Quillan.sqlite) with its externally stored data.
  // Throws std::runtime_error naming the journal when it cannot be read.
  explicit PrivateJournal(const std::filesystem::path& journal);
  ~PrivateJournal();
  PrivateJournal(const PrivateJournal&) = delete;
  PrivateJournal& operator=(const PrivateJournal&) = delete;

  // The copy's group container, and an empty application-support folder
  // beside it: no legacy journal of the user's is ever moved into the copy.
  const std::filesystem::path& groupContainer() const { return groupContainer_; }
  const std::filesystem::path& appSupport() const { return appSupport_; }

  // The copy itself, a Quillan.sqlite in groupContainer().
  std::filesystem::path file() const;

  // Saves a note dated `date`, written at `writtenAt`, as the app does, and
  // returns its primary key.
  std::int64_t addNote(platform::Date date, const std::string& text, platform::Date writtenAt);

 private:
  hosting::ScratchFolder root_;
  std::filesystem::path groupContainer_;
  std::filesystem::path appSupport_;
  std::unique_ptr<fixtures::JournalAppender> appender_;
};

}  // namespace quillan::replay
