#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <optional>

#include "LiveHostFixture.hpp"
#include "fixtures/JournalAppender.hpp"
#include "fixtures/JournalWriter.hpp"
#include "host/JournalWatcher.hpp"
#include "store/SqliteDatabase.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::host {
namespace {

using namespace std::chrono_literals;
using quillan::testing::eventually;

// What the store's reader counts when it opens the journal now, as the
// worker that a reload starts does; -1 when it cannot read it.
int notesIn(const std::filesystem::path& journal) {
  try {
    store::SqliteDatabase reader(journal, store::SqliteDatabase::Mode::readOnly);
    auto count = reader.prepare("SELECT count(*) FROM ZNOTE");
    count.step();
    return static_cast<int>(count.integer(0));
  } catch (const store::SqliteException&) {
    return -1;
  }
}

class JournalWatcherTest : public ::testing::Test {
 protected:
  quillan::testing::TemporaryFolder scratch_{"quillan-watch"};
  const std::filesystem::path folder_ = scratch_.path();
  std::atomic<int> commits_{0};
};

// The app's journal changed in each of the ways it can: the reload comes
// once, after the change is whole, so the worker it starts reads it.
TEST_F(JournalWatcherTest, EachWayTheJournalChangesIsOneReloadThatSeesIt) {
  const auto journal = folder_ / "Quillan.sqlite";
  const auto replacement = folder_ / "replacement.sqlite";
  std::optional<fixtures::JournalWriter> app;  // the app's connection, kept open as the app keeps it
  const auto writeReplacement = [&] {
    fixtures::JournalWriter writer(replacement);
    for (int note = 0; note < 5; ++note) writer.addNote({.info = "restored"});
  };
  const struct {
    const char* change;
    bool appOpen;
    std::function<void()> apply;
    int notes;
    // The app's close checkpoints its log into the main file: when a busy
    // machine delays that past a quiet spell, the burst shows no commit the
    // watcher can tell from one made in rollback mode, so it reloads again.
    int reloadsAtMost = 1;
  } changes[] = {
      {"committed through the log", true, [&] { app->addNote({.info = "new"}); }, 3},
      {"committed by the app, which then closes it", false,
       [&] { fixtures::JournalAppender(journal).addNote({.info = "new"}); }, 3, 2},
      {"replaced by rename", false,
       [&] {
         writeReplacement();
         std::filesystem::rename(replacement, journal);
       },
       5},
      {"rewritten in place", false,
       [&] {
         writeReplacement();
         std::ofstream(journal, std::ios::binary | std::ios::trunc) << std::ifstream(replacement).rdbuf();
       },
       5},
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(change.change);
    app.emplace(journal);
    for (int note = 0; note < 2; ++note) app->addNote({.info = "old"});
    if (!change.appOpen) app.reset();
    std::atomic<int> reloads{0}, lastSeen{0};
    JournalWatcher watcher(journal,
                           [&] {
                             lastSeen = notesIn(journal);
                             ++reloads;
                           },
                           {50ms, 300ms});
    change.apply();
    EXPECT_TRUE(eventually([&] { return reloads > 0; }, 5s));
    std::this_thread::sleep_for(400ms);
    EXPECT_GE(reloads, 1);
    EXPECT_LE(reloads, change.reloadsAtMost);
    EXPECT_EQ(lastSeen, change.notes);
    // Before the watcher lets go of the journal's files (see KeptFile).
    app.reset();
  }
}

TEST_F(JournalWatcherTest, ReadersAndOtherFilesAreNotCommits) {
  JournalWatcher watcher(folder_ / "Quillan.sqlite", [this] { ++commits_; }, {20ms, 100ms});
  for (const auto* other : {"Quillan.sqlite-shm", "Other.sqlite-wal", "Quillan.sqlite.bak"})
    std::ofstream(folder_ / other, std::ios::app) << "x";
  // A connection opened for writing creates an empty WAL and removes it on close.
  { std::ofstream empty(folder_ / "Quillan.sqlite-wal"); }
  std::filesystem::remove(folder_ / "Quillan.sqlite-wal");
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(commits_, 0);
}

// The group container removed or replaced, then made again with a journal in
// it: the watcher follows the folder back, and keeps following it after.
TEST_F(JournalWatcherTest, AFolderThatComesBackIsWatchedAgain) {
  const struct {
    const char* name;
    std::function<void(const std::filesystem::path&)> takeAway;
  } cases[] = {
      {"removed", [](const auto& folder) { std::filesystem::remove_all(folder); }},
      {"moved away", [](const auto& folder) { std::filesystem::rename(folder, folder.string() + ".old"); }},
      {"removed with the folder above", [](const auto& folder) { std::filesystem::remove_all(folder.parent_path()); }},
  };
  for (const auto& replacement : cases) {
    SCOPED_TRACE(replacement.name);
    const auto group = folder_ / replacement.name / "group";
    std::filesystem::create_directories(group);
    std::atomic<int> commits{0};
    JournalWatcher watcher(group / "Quillan.sqlite", [&] { ++commits; }, {20ms, 100ms});
    replacement.takeAway(group);
    std::this_thread::sleep_for(50ms);
    std::filesystem::create_directories(group);
    std::ofstream(group / "Quillan.sqlite") << "a new journal";
    EXPECT_TRUE(eventually([&] { return commits >= 1; }, 5s));
    std::this_thread::sleep_for(200ms);
    const int before = commits;
    std::ofstream(group / "Quillan.sqlite-wal", std::ios::app) << "a commit";
    EXPECT_TRUE(eventually([&] { return commits > before; }, 5s));
  }
}

TEST_F(JournalWatcherTest, AMissingFolderIsAnError) {
  EXPECT_THROW(JournalWatcher(folder_ / "gone" / "Quillan.sqlite", [] {}), std::runtime_error);
}

}  // namespace
}  // namespace quillan::host
