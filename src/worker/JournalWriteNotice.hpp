#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "store/DateColumnRead.hpp"

namespace quillan::worker {

// What a host that writes a journal nothing else writes (a replay's private
// copy) tells its warm workers around each of its writes: that one begins,
// then that it ended having inserted `rowsAdded` (the notes' keys and dates).
// A warm worker whose read of the note dates was current when the write
// began, then holds the journal's dates by adding those rows to it, without
// reading them all again (NoteDatesKeeper). The states are read by the warm
// worker, never by the host: a process that holds the journal open through
// SQLite would drop its own locks on the files by closing any other
// descriptor of them.
struct JournalWriteNotice {
  enum class Stage { begins, ended };
  Stage stage = Stage::begins;
  std::filesystem::path journal;
  std::vector<store::DateColumnRead::Row> rowsAdded;  // dates stored as numbers, once ended
};

//   {"type":"journalWrite","stage":"begins"|"ended","journal","rows":[[key, seconds]...]}
nlohmann::json toJson(const JournalWriteNotice& notice);
// Nullopt for a message not of that form.
std::optional<JournalWriteNotice> journalWriteNoticeFromJson(const nlohmann::json& json);

}  // namespace quillan::worker
