#pragma once

#include <chrono>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "store/JournalFileState.hpp"
#include "worker/JournalWriteNotice.hpp"

namespace quillan::worker {

// Keeps, in the warm worker, a read of the journal's note dates that the
// children it forks inherit (store::knownDateColumn): a child whose snapshot
// is proved to be the state it was read at judges the dates in memory rather
// than scanning the table. Before each view's evaluation (timelines judge no
// note) the journal's file state is compared with the read's; only when they
// differ is the column read again,
// in a child of its own, so the warm worker never opens the journal through
// SQLite (its children would inherit SQLite's per-file state). A read that
// fails or runs past `deadline` leaves no read: the evaluations scan.
class NoteDatesKeeper {
 public:
  explicit NoteDatesKeeper(std::chrono::milliseconds deadline) : deadline_(deadline) {}

  // Makes the kept read current for the journal `request` (a view request)
  // reads; other requests leave it as it is. `closeInChild` is a descriptor the reading child must not keep.
  void refreshFor(const nlohmann::json& request, int closeInChild);
  // Around a host's own write: when the kept read is current as the write
  // begins, it is made current again once it ended by adding the rows the
  // host inserted; otherwise it is left for the next view to read again.
  void hear(const JournalWriteNotice& notice);

 private:
  void refresh(const std::filesystem::path& journal, int closeInChild);

  std::chrono::milliseconds deadline_;
  std::filesystem::path failedJournal_;
  std::filesystem::path currentAsWriteBegan_;
  store::JournalFileState failedState_;
};

// The journal an evaluation under these settings reads: Quillan.sqlite in
// its group container, or in the process's own.
std::filesystem::path journalOfRequest(const nlohmann::json& request);

}  // namespace quillan::worker
