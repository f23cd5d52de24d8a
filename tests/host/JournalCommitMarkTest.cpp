// What moves the journal's commit mark: every finished commit, whatever way
// the journal came to change, and nothing a reader, a checkpoint or a commit
// still being written does.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <functional>
#include <optional>

#include "fixtures/JournalAppender.hpp"
#include "fixtures/JournalWriter.hpp"
#include "host/JournalCommitMark.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::host {
namespace {

using Change = std::function<void(const std::filesystem::path&)>;

void append(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary | std::ios::app) << bytes;
}

void readEveryNote(const std::filesystem::path& journal) {
  sqlite3* reader = nullptr;
  ASSERT_EQ(sqlite3_open_v2(journal.c_str(), &reader, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(reader, "SELECT count(*) FROM ZNOTE", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(reader);
}

void writeJournal(const std::filesystem::path& journal, int notes) {
  fixtures::JournalWriter writer(journal);
  for (int note = 0; note < notes; ++note) writer.addNote({.info = "a note"});
}

TEST(JournalCommitMark, MovesWithEveryFinishedCommitAndNothingElse) {
  quillan::testing::TemporaryFolder folder("quillan-mark");
  const auto journal = folder / "Quillan.sqlite";
  std::optional<fixtures::JournalWriter> app;  // the app's connection, kept open as the app keeps it
  const Change appOpen = [&](const auto& path) { app.emplace(path); };
  const Change appCommitted = [&](const auto& path) {
    app.emplace(path);
    app->addNote({.info = "new"});
  };
  const Change appClosed = [](const auto&) {};
  const Change inRollbackMode = [](const auto& path) {
    fixtures::JournalWriter writer(path);
    writer.execute("PRAGMA journal_mode = DELETE");
  };
  const struct {
    const char* change;
    Change before;
    Change apply;
    bool moves;
  } changes[] = {
      {"committed through the log", appOpen, [&](const auto&) { app->addNote({.info = "new"}); }, true},
      {"log frames written, the index not yet", appOpen,
       [](const auto& path) { append(path.string() + "-wal", std::string(4096, 'f')); }, false},
      {"checkpointed into the main file", appCommitted,
       [&](const auto&) { app->execute("PRAGMA wal_checkpoint(PASSIVE)"); }, false},
      {"read while the app has it open", appOpen, readEveryNote, false},
      {"its log checkpointed and removed as the app closes", appCommitted, [&](const auto&) { app->close(); }, false},
      {"read", appClosed, readEveryNote, false},
      {"committed and closed by the app", appClosed,
       [](const auto& path) { fixtures::JournalAppender(path).addNote({.info = "new"}); }, true},
      {"committed in rollback mode", inRollbackMode,
       [](const auto& path) { fixtures::JournalAppender(path).addNote({.info = "new"}); }, true},
      {"replaced by rename", appClosed,
       [&](const auto& path) {
         writeJournal(folder / "replacement.sqlite", 3);
         std::filesystem::rename(folder / "replacement.sqlite", path);
       },
       true},
      {"rewritten in place", appClosed,
       [&](const auto& path) {
         writeJournal(folder / "replacement.sqlite", 3);
         std::ofstream(path, std::ios::binary | std::ios::trunc)
             << std::ifstream(folder / "replacement.sqlite").rdbuf();
       },
       true},
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(change.change);
    writeJournal(journal, 2);
    change.before(journal);
    JournalCommitMarkReader marks(journal);
    const auto before = marks.read();
    ASSERT_TRUE(before);
    change.apply(journal);
    const auto after = marks.read();
    ASSERT_TRUE(after);
    EXPECT_EQ(committedSince(*before, *after), change.moves);
    app.reset();
  }
}

TEST(JournalCommitMark, VouchesForNothingWhileACommitIsUnfinishedOrThereIsNoJournal) {
  quillan::testing::TemporaryFolder folder("quillan-mark");
  const auto journal = folder / "Quillan.sqlite";
  const auto index = journal.string() + "-shm";
  const struct {
    const char* state;
    Change make;
  } states[] = {
      {"no journal", [](const auto& path) { std::filesystem::remove(path); }},
      {"a rollback journal beside it", [](const auto& path) { append(path.string() + "-journal", "pages"); }},
      {"an index header half-written",
       [&](const auto&) { append(index, std::string(48, '\1') + std::string(48, '\2')); }},
      {"an index being made", [&](const auto&) { append(index, std::string(96, '\0')); }},
      {"an index cut short", [&](const auto&) { append(index, std::string(60, '\1')); }},
      {"a journal being written in place", [](const auto& path) { std::filesystem::resize_file(path, 5000); }},
      {"a file that is no journal", [](const auto& path) { std::ofstream(path, std::ios::trunc) << "notes"; }},
  };
  for (const auto& state : states) {
    SCOPED_TRACE(state.state);
    writeJournal(journal, 1);
    JournalCommitMarkReader marks(journal);
    ASSERT_TRUE(marks.read());
    state.make(journal);
    EXPECT_FALSE(marks.read());
    std::filesystem::remove(journal.string() + "-journal");
    std::filesystem::remove(index);
  }
}

}  // namespace
}  // namespace quillan::host
