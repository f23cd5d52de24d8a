#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "host/CommitDebounce.hpp"

namespace quillan::host {

// Watches the journal's folder (inotify) for the app's commits: a write to
// the journal file or its write-ahead log, or a journal moved into place, and
// calls `committed` on its own thread when CommitDebounce says a reload is
// due: at once when a commit after a quiet spell is finished (its commit mark
// moved), and once more after a burst of writes if another commit came in it.
// Readers touch only the -shm index, whose writes are not watched, so the
// host's own reads never look like a commit.
//
// The folder may itself be removed or replaced (the group container deleted
// and made again): the watcher then watches the nearest folder above it that
// exists until the folder is back, and a journal found in the folder that
// came back counts as a commit.
class JournalWatcher {
 public:
  using Timing = CommitDebounce::Timing;

  // Throws std::runtime_error when the folder cannot be watched.
  JournalWatcher(const std::filesystem::path& journal, std::function<void()> committed, Timing timing);
  JournalWatcher(const std::filesystem::path& journal, std::function<void()> committed)
      : JournalWatcher(journal, std::move(committed), Timing{}) {}
  ~JournalWatcher();
  JournalWatcher(const JournalWatcher&) = delete;
  JournalWatcher& operator=(const JournalWatcher&) = delete;

 private:
  void run();
  // Reads what inotify has; true when the journal or its WAL changed.
  bool readChanges();
  // Watches the folder again, or the nearest folder above it while it is
  // missing; true when the folder is watched and already holds a journal.
  bool rearm();
  void unwatch(int& watch);

  std::filesystem::path folder_;
  std::filesystem::path journal_;
  std::string journalName_;
  std::string walName_;
  std::function<void()> committed_;
  Timing timing_;
  int inotify_ = -1;
  int folderWatch_ = -1;
  int ancestorWatch_ = -1;  // while the folder is missing
  int stop_ = -1;           // an eventfd the destructor signals
  std::thread thread_;
};

}  // namespace quillan::host
