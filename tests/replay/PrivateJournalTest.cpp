#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "replay/PrivateJournal.hpp"
#include "store/StoreTestSupport.hpp"
#include "support/FileContents.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::replay {
namespace {

namespace fs = std::filesystem;

platform::Date at(const std::string& iso) { return *platform::ISO8601::parse(iso); }

// Every file in `folder` with its bytes; of a -shm only that it is there: it
// is the index to the -wal that every reader of an open journal shares.
std::map<std::string, std::string> contentsOf(const fs::path& folder) {
  auto contents = testing::contentsOf(folder);
  for (auto& [name, bytes] : contents) {
    if (name.ends_with("-shm")) bytes.clear();
  }
  return contents;
}

std::vector<std::string> noteTexts(const fs::path& journal) {
  std::vector<std::string> texts;
  for (const auto& note : store::testing::fetchNotes(*store::testing::contextFor(journal))) {
    texts.push_back(note->info().value_or(""));
  }
  std::sort(texts.begin(), texts.end());
  return texts;
}

// How the app leaves its journal: closed, open with committed pages still in
// its -wal, or open with the -wal emptied by a checkpoint (read as bytes).
enum class AppState { closed, openWithLog, openLogEmptied };

TEST(PrivateJournal, CopiesAClosedOrAnOpenJournalWithItsWalAndIsGoneWithTheObject) {
  for (const auto state : {AppState::closed, AppState::openWithLog, AppState::openLogEmptied}) {
    const auto label = std::vector<std::string>{"closed", "open", "open, log emptied"}[static_cast<int>(state)];
    testing::TemporaryFolder folder;
    const auto container = folder.path() / "group";
    fs::create_directories(container);
    const auto journal = container / "Quillan.sqlite";
    std::optional<fixtures::JournalWriter> app;
    app.emplace(journal, state == AppState::openWithLog ? fixtures::JournalLayout{.walAutocheckpoint = 0}
                                                        : fixtures::JournalLayout{});
    app->addNote({.date = at("2026-11-22T07:30:00+01:00"), .info = std::string("early")});
    if (state == AppState::closed) app.reset();
    if (state == AppState::openLogEmptied) app->execute("PRAGMA wal_checkpoint(TRUNCATE)");
    ASSERT_EQ(fs::exists(journal.string() + "-wal"), state != AppState::closed) << label;
    ASSERT_EQ(fs::exists(journal.string() + "-wal") && fs::file_size(journal.string() + "-wal") == 0,
              state == AppState::openLogEmptied)
        << label;
    const auto before = contentsOf(container);

    fs::path root;
    {
      PrivateJournal copy(journal);
      root = copy.groupContainer().parent_path();
      EXPECT_TRUE(fs::is_directory(copy.appSupport())) << label;
      EXPECT_TRUE(fs::is_empty(copy.appSupport())) << label << ": a legacy journal could be moved into the copy";
      copy.addNote(at("2026-11-22T09:00:00+01:00"), "later", at("2026-11-22T09:00:00+01:00"));
      EXPECT_EQ(noteTexts(copy.groupContainer() / "Quillan.sqlite"), (std::vector<std::string>{"early", "later"}))
          << label;
      // Compared without printing a journal's bytes on failure.
      EXPECT_TRUE(contentsOf(container) == before) << label << ": the user's journal changed";
    }
    EXPECT_FALSE(fs::exists(root)) << label << ": the copy outlived its object";
    app.reset();
  }
}

}  // namespace
}  // namespace quillan::replay
