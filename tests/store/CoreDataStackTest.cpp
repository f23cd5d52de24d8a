#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <thread>

#include "StoreTestSupport.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "store/NoteImage.hpp"
#include "store/StoreFileCopy.hpp"

namespace quillan::store {
namespace {

using namespace testing;

class CoreDataStackTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(group());
    std::filesystem::create_directories(support());
    platform::FileManager::setGroupContainerDirectory(group());
    platform::FileManager::setApplicationSupportDirectory(support());
    platform::ExtensionLog::setSink([this](std::string_view line) { printed_.emplace_back(line); });
  }
  void TearDown() override { platform::ExtensionLog::setSink({}); }

  std::filesystem::path group() const { return directory_ / "group"; }
  std::filesystem::path support() const { return directory_ / "support"; }
  std::filesystem::path sharedStore() const { return group() / "Quillan.sqlite"; }
  std::filesystem::path legacyStore() const { return support() / "Quillan.sqlite"; }

  static void writeJournal(const std::filesystem::path& path, const std::vector<std::string>& infos) {
    fixtures::JournalWriter writer(path);
    for (const auto& info : infos) writer.addNote({.info = info});
  }

  static std::vector<std::string> infos(PersistentContainer& container) {
    std::vector<std::string> out;
    for (const auto& note : fetchNotes(*container.viewContext())) out.push_back(note->info().value_or(""));
    return out;
  }

  TemporaryDirectory directory_;
  std::vector<std::string> printed_;
};

TEST_F(CoreDataStackTest, WithoutLegacyStoreUsesOneSharedDescription) {
  writeJournal(sharedStore(), {"shared"});
  auto stack = CoreDataStack::makeForTesting();
  auto& container = stack->persistentContainer();
  EXPECT_EQ(&container, &stack->persistentContainer());
  EXPECT_EQ(container.loadedStoreCount(), 1u);
  ASSERT_EQ(container.persistentStoreDescriptions.size(), 1u);
  const auto& description = container.persistentStoreDescriptions[0];
  EXPECT_EQ(description.url, platform::URL::fileURL(sharedStore()));
  ASSERT_TRUE(description.cloudKitContainerOptions);
  EXPECT_EQ(description.cloudKitContainerOptions->containerIdentifier, "iCloud.com.tarvelo.Quillan");
  EXPECT_TRUE(container.viewContext()->automaticallyMergesChangesFromParent);
  EXPECT_EQ(container.viewContext()->mergePolicy, MergePolicy::mergeByPropertyObjectTrump);
  EXPECT_EQ(infos(container), std::vector<std::string>{"shared"});
  EXPECT_TRUE(printed_.empty());
}

TEST_F(CoreDataStackTest, LegacyStoreIsMigratedDeletedAndNotMovedTwice) {
  writeJournal(legacyStore(), {"old one", "old two"});
  auto first = CoreDataStack::makeForTesting();
  auto& container = first->persistentContainer();
  ASSERT_EQ(container.persistentStoreDescriptions.size(), 1u);
  EXPECT_FALSE(container.persistentStoreDescriptions[0].cloudKitContainerOptions)
      << "the legacy run keeps the default description";
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  EXPECT_EQ(infos(container), (std::vector<std::string>{"old one", "old two"}))
      << "after the move this process reads the migrated store";
  EXPECT_TRUE(printed_.empty());

  auto next = CoreDataStack::makeForTesting();
  auto& normal = next->persistentContainer();
  ASSERT_TRUE(normal.persistentStoreDescriptions[0].cloudKitContainerOptions);
  EXPECT_EQ(infos(normal), (std::vector<std::string>{"old one", "old two"}));
}

TEST_F(CoreDataStackTest, LegacyCompanionFilesAreLeftAlone) {
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  fixtures::JournalWriter writer(legacyStore(), layout);
  writer.addNote({.info = "still in the wal"});
  CoreDataStack::makeForTesting()->persistentContainer();
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  EXPECT_TRUE(std::filesystem::exists(legacyStore().string() + "-wal"));
  auto next = CoreDataStack::makeForTesting();
  EXPECT_EQ(infos(next->persistentContainer()), std::vector<std::string>{"still in the wal"})
      << "rows committed to the legacy WAL travel with the move";
}

TEST_F(CoreDataStackTest, SameURLNeitherMigratesNorDeletes) {
  platform::FileManager::setApplicationSupportDirectory(group());
  writeJournal(sharedStore(), {"one place"});
  auto stack = CoreDataStack::makeForTesting();
  EXPECT_EQ(infos(stack->persistentContainer()), std::vector<std::string>{"one place"});
  EXPECT_TRUE(std::filesystem::exists(sharedStore()));
  EXPECT_TRUE(printed_.empty());
}

TEST_F(CoreDataStackTest, AFailedMoveKeepsCommitsInTheLegacyWalReadable) {
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  fixtures::JournalWriter writer(legacyStore(), layout);
  writer.addNote({.info = "checkpointed?"});
  writer.addNote({.info = "only in the wal"});
  writeJournal(sharedStore(), {"current"});
  auto stack = CoreDataStack::makeForTesting();
  auto& container = stack->persistentContainer();
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  EXPECT_EQ(infos(container), (std::vector<std::string>{"checkpointed?", "only in the wal"}));
}

TEST_F(CoreDataStackTest, FailedMigrationPrintsOneLineAndStillDeletes) {
  writeJournal(legacyStore(), {"lost"});
  std::filesystem::create_directories(sharedStore() / "in-the-way");
  auto stack = CoreDataStack::makeForTesting();
  stack->persistentContainer();
  ASSERT_EQ(printed_.size(), 1u);
  EXPECT_EQ(printed_[0],
            "The file \"Quillan.sqlite\" couldn't be saved because a file with the same name already exists.");
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  EXPECT_TRUE(std::filesystem::is_directory(sharedStore() / "in-the-way"));
}

TEST_F(CoreDataStackTest, ALegacyStoreNeverReplacesTheJournalInTheGroupContainer) {
  writeJournal(legacyStore(), {"old"});
  writeJournal(sharedStore(), {"current", "newer"});
  const auto before = std::filesystem::file_size(sharedStore());
  auto stack = CoreDataStack::makeForTesting();
  EXPECT_EQ(infos(stack->persistentContainer()), std::vector<std::string>{"old"})
      << "the run that deletes the legacy file goes on reading the journal it loaded";
  ASSERT_EQ(printed_.size(), 1u);
  EXPECT_NE(printed_[0].find("already exists"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  EXPECT_EQ(infos(stack->persistentContainer()), std::vector<std::string>{"old"}) << "and on every later read";
  EXPECT_EQ(std::filesystem::file_size(sharedStore()), before);
  EXPECT_EQ(infos(CoreDataStack::makeForTesting()->persistentContainer()),
            (std::vector<std::string>{"current", "newer"}));
}

// Off the phone the host names both folders; a symlink can make the legacy
// location and the shared one the same file under two names.
TEST_F(CoreDataStackTest, ALegacyPathThatIsTheJournalItselfIsLeftAlone) {
  writeJournal(sharedStore(), {"the only copy"});
  std::filesystem::remove_all(support());
  std::filesystem::create_directory_symlink(group(), support());
  ASSERT_TRUE(std::filesystem::exists(legacyStore()));
  auto stack = CoreDataStack::makeForTesting();
  EXPECT_EQ(infos(stack->persistentContainer()), std::vector<std::string>{"the only copy"});
  EXPECT_TRUE(printed_.empty());
  EXPECT_TRUE(std::filesystem::exists(sharedStore()));
}

TEST_F(CoreDataStackTest, ExternallyStoredImagesMoveWithTheStore) {
  const std::vector<std::uint8_t> png = {0x89, 'P', 'N', 'G', 1, 2, 3};
  {
    fixtures::JournalWriter writer(legacyStore());
    const auto note = writer.addNote({.info = std::string("with a photo")});
    writer.addImage({.owner = note, .imgData = png, .storage = fixtures::BinaryStorage::externalFile});
  }
  auto stack = CoreDataStack::makeForTesting();
  auto& container = stack->persistentContainer();
  EXPECT_TRUE(printed_.empty());
  EXPECT_FALSE(std::filesystem::exists(legacyStore()));
  const auto notes = fetchNotes(*container.viewContext());
  ASSERT_EQ(notes.size(), 1u);
  const auto images = notes[0]->images();
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0]->imgData(), png);
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

// Kills a child in the middle of copies of a large journal: whatever the
// moment, the destination is the old journal or the whole new one.
TEST_F(CoreDataStackTest, ACrashMidMoveLeavesNoHalfJournal) {
  {
    fixtures::JournalWriter writer(legacyStore());
    writer.begin();
    for (int i = 0; i < 20000; ++i) writer.addNote({.info = std::string(200, 'n')});
    writer.commit();
  }
  for (int delayMicroseconds : {0, 2000, 8000, 30000}) {
    std::filesystem::remove(sharedStore());
    const pid_t child = ::fork();
    if (child == 0) {
      try {
        copyStoreFile(legacyStore(), sharedStore());
      } catch (...) {
        ::_exit(1);
      }
      ::_exit(0);
    }
    ::usleep(static_cast<useconds_t>(delayMicroseconds));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    // Whatever the moment, there is no journal yet or the whole copy.
    if (!std::filesystem::exists(sharedStore())) continue;
    EXPECT_EQ(fetchNotes(*contextFor(sharedStore())).size(), 20000u) << "after " << delayMicroseconds;
  }
}

TEST_F(CoreDataStackTest, ACopyNeverReplacesAStoreThatAppearedAtItsDestination) {
  writeJournal(legacyStore(), {"legacy"});
  writeJournal(sharedStore(), {"the app's own"});
  EXPECT_THROW(copyStoreFile(legacyStore(), sharedStore()), DestinationExists);
  const auto notes = fetchNotes(*contextFor(sharedStore()));
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0]->info(), "the app's own");
  EXPECT_FALSE(std::filesystem::exists(temporaryCopyPath(sharedStore())));
}

TEST_F(CoreDataStackTest, ALeftoverTemporaryCopyDoesNotDisturbTheMove) {
  writeJournal(legacyStore(), {"fresh"});
  std::ofstream(temporaryCopyPath(sharedStore())) << "half a journal";
  { std::ofstream(sharedStore().string() + "-wal") << "stale wal"; }
  copyStoreFile(legacyStore(), sharedStore());
  EXPECT_EQ(fetchNotes(*contextFor(sharedStore())).size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(temporaryCopyPath(sharedStore())));
}

}  // namespace
}  // namespace quillan::store
