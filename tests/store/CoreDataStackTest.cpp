#include <gtest/gtest.h>

#include <thread>

#include "StoreTestSupport.hpp"
#include "store/CoreDataStack.hpp"
#include "store/NoteImage.hpp"
#include "store/StoreFileCopy.hpp"

namespace quillan::store {
namespace {

using namespace testing;

using CoreDataStackTest = StoreFolders;

// How the folders stand besides the journals written in them.
enum class Folders { apart, theSame, linked, folderInTheJournalsPlace };

// The journals in the legacy folder and the group container before the first
// read, what that read and the next one see, and what the move left.
struct LegacyMove {
  const char* name;
  std::vector<std::string> legacy, shared;
  std::vector<std::string> firstRead, nextRead;
  std::string printed = "";  // the one line the move logged, or empty for none
  Folders folders = Folders::apart;
};

const std::string kExists =
    "The file \"Quillan.sqlite\" couldn't be saved because a file with the same name already exists.";

void arrange(StoreFolders& test, Folders folders) {
  if (folders == Folders::theSame) platform::FileManager::setApplicationSupportDirectory(test.group());
  if (folders == Folders::folderInTheJournalsPlace)
    std::filesystem::create_directories(test.sharedStore() / "in-the-way");
  if (folders != Folders::linked) return;
  std::filesystem::remove_all(test.support());
  std::filesystem::create_directory_symlink(test.group(), test.support());
}

TEST_F(CoreDataStackTest, TheLegacyJournalIsMovedOnceAndNeverOverAJournal) {
  const std::vector<LegacyMove> moves = {
      {"no legacy journal", {}, {"shared"}, {"shared"}, {"shared"}},
      {"a legacy journal alone", {"old one", "old two"}, {}, {"old one", "old two"}, {"old one", "old two"}},
      {"both folders the same", {}, {"one place"}, {"one place"}, {"one place"}, "", Folders::theSame},
      // Off the phone the host names both folders; a symlink can make the legacy
      // location and the shared one the same file under two names.
      {"the legacy path a link", {}, {"the only copy"}, {"the only copy"}, {"the only copy"}, "", Folders::linked},
      // The run that deletes the legacy file goes on reading the journal it loaded.
      {"a journal in the group container", {"old"}, {"current", "newer"}, {"old"}, {"current", "newer"}, kExists},
      {"a folder in the journal's place", {"lost"}, {}, {"lost"}, {}, kExists, Folders::folderInTheJournalsPlace},
  };
  for (const auto& move : moves) {
    SCOPED_TRACE(move.name);
    std::filesystem::remove_all(directory_.path());
    SetUp();
    printed_.clear();
    arrange(*this, move.folders);
    if (!move.legacy.empty()) writeJournal(legacyStore(), move.legacy);
    if (!move.shared.empty()) writeJournal(sharedStore(), move.shared);
    const auto sharedBefore = std::filesystem::is_regular_file(sharedStore()) ? readText(sharedStore()) : "";
    const bool sameFile = std::filesystem::equivalent(support(), group());
    auto stack = CoreDataStack::makeForTesting();
    EXPECT_EQ(infos(stack->persistentContainer()), move.firstRead);
    EXPECT_EQ(infos(stack->persistentContainer()), move.firstRead) << "and on every later read";
    EXPECT_EQ(printed_, move.printed.empty() ? std::vector<std::string>{} : std::vector<std::string>{move.printed});
    EXPECT_EQ(std::filesystem::exists(legacyStore()), sameFile);
    if (std::filesystem::is_regular_file(sharedStore())) {
      if (!sharedBefore.empty()) {
        EXPECT_TRUE(readText(sharedStore()) == sharedBefore) << "the journal was replaced";
      }
      EXPECT_EQ(infos(CoreDataStack::makeForTesting()->persistentContainer()), move.nextRead);
    } else {
      EXPECT_TRUE(std::filesystem::is_directory(sharedStore() / "in-the-way"));
    }
  }
}

TEST_F(CoreDataStackTest, CommitsInTheLegacyWalTravelWithTheMoveOrStayReadable) {
  for (const bool journalInTheWay : {false, true}) {
    SCOPED_TRACE(journalInTheWay ? "a journal in the way" : "a free group container");
    std::filesystem::remove_all(directory_.path());
    SetUp();
    fixtures::JournalLayout layout;
    layout.walAutocheckpoint = 0;
    fixtures::JournalWriter writer(legacyStore(), layout);
    writer.addNote({.info = "checkpointed?"});
    writer.addNote({.info = "only in the wal"});
    if (journalInTheWay) writeJournal(sharedStore(), {"current"});
    auto stack = CoreDataStack::makeForTesting();
    EXPECT_EQ(infos(stack->persistentContainer()), (std::vector<std::string>{"checkpointed?", "only in the wal"}));
    EXPECT_FALSE(std::filesystem::exists(legacyStore()));
    EXPECT_TRUE(std::filesystem::exists(legacyStore().string() + "-wal")) << "companion files are left alone";
    if (journalInTheWay) continue;
    EXPECT_EQ(infos(CoreDataStack::makeForTesting()->persistentContainer()),
              (std::vector<std::string>{"checkpointed?", "only in the wal"}));
  }
}

TEST_F(CoreDataStackTest, ExternallyStoredImagesMoveWithTheStore) {
  const fixtures::Bytes png{0x89, 'P', 'N', 'G', 1, 2, 3};
  {
    fixtures::JournalWriter writer(legacyStore());
    writer.addImage({.owner = writer.addNote({}), .imgData = png, .storage = fixtures::BinaryStorage::externalFile});
  }
  auto stack = CoreDataStack::makeForTesting();
  const auto notes = fetchNotes(*stack->persistentContainer().viewContext());
  EXPECT_TRUE(printed_.empty());
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  ASSERT_EQ(notes.size(), 1u);
  ASSERT_EQ(notes[0]->images().size(), 1u);
  EXPECT_EQ(notes[0]->images()[0]->imgData(), png);
}

TEST_F(CoreDataStackTest, ConcurrentFirstReadsBuildOnce) {
  writeJournal(legacyStore(), {"moved once"});
  auto stack = CoreDataStack::makeForTesting();
  std::vector<PersistentContainer*> seen(8);
  std::vector<std::thread> threads;
  for (auto& slot : seen) threads.emplace_back([&] { slot = &stack->persistentContainer(); });
  for (auto& thread : threads) thread.join();
  for (auto* container : seen) EXPECT_EQ(container, seen[0]);
  EXPECT_EQ(seen[0]->loadedStoreCount(), 1u);
  EXPECT_TRUE(printed_.empty()) << "a second move would have failed on the deleted file";
}

TEST_F(CoreDataStackTest, MissingGroupContainerStopsSilently) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  platform::FileManager::setGroupContainerDirectory(directory_ / "absent");
  EXPECT_DEATH(CoreDataStack::makeForTesting()->persistentContainer(), "^$");
}

// A leftover temporary copy or stale WAL does not disturb a copy; a store at
// the destination is never replaced. Neither way leaves a temporary copy.
TEST_F(CoreDataStackTest, ACopyIgnoresLeftoversButNeverReplacesAStoreAtItsDestination) {
  writeJournal(legacyStore(), {"legacy"});
  writeJournal(support() / "later.sqlite", {"later"});
  std::ofstream(temporaryCopyPath(sharedStore())) << "half a journal";
  { std::ofstream(sharedStore().string() + "-wal") << "stale wal"; }
  copyStoreFile(legacyStore(), sharedStore());
  EXPECT_THROW(copyStoreFile(support() / "later.sqlite", sharedStore()), DestinationExists);
  EXPECT_EQ(infos(fetchNotes(*contextFor(sharedStore()))), std::vector<std::string>{"legacy"});
  EXPECT_FALSE(std::filesystem::exists(temporaryCopyPath(sharedStore())));
}

}  // namespace
}  // namespace quillan::store
