#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "StoreTestSupport.hpp"
#include "store/CoreDataStack.hpp"

namespace quillan::store {
namespace {

using namespace testing;

// Runs `read` where the journal's folder cannot be written (root writes
// anywhere, so the child runs as nobody). 0 when `read` answers true.
int readWithoutWriteAccess(const std::filesystem::path& folder, const std::function<bool()>& read) {
  ::chmod(folder.c_str(), 0555);
  const int status = runUnprivileged(read);
  ::chmod(folder.c_str(), 0755);
  return status;
}

bool readsExactly(const std::vector<std::string>& expected) {
  return infos(CoreDataStack::makeForTesting()->persistentContainer()) == expected;
}

using ReadOnlyFolderTest = StoreFolders;

TEST_F(ReadOnlyFolderTest, AJournalTheAppClosedCleanlyIsReadImmutable) {
  {
    fixtures::JournalWriter writer(sharedStore());
    writer.addNote({.info = "one"});
    writer.addNote({.info = "two"});
  }
  ASSERT_FALSE(std::filesystem::exists(sharedStore().string() + "-wal"));
  const auto before = readText(sharedStore());
  EXPECT_EQ(readWithoutWriteAccess(group(), [] { return readsExactly({"one", "two"}); }), 0);
  EXPECT_EQ(readText(sharedStore()), before);
  EXPECT_FALSE(std::filesystem::exists(sharedStore().string() + "-wal")) << "the reader created nothing";
}

TEST_F(ReadOnlyFolderTest, AJournalTheAppHasOpenIsReadThroughItsWal) {
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  fixtures::JournalWriter writer(sharedStore(), layout);
  writer.addNote({.info = "committed"});
  writer.addNote({.info = "still in the wal"});
  ASSERT_TRUE(std::filesystem::exists(sharedStore().string() + "-wal"));
  ASSERT_TRUE(std::filesystem::exists(sharedStore().string() + "-shm"));
  EXPECT_EQ(readWithoutWriteAccess(group(), [] { return readsExactly({"committed", "still in the wal"}); }), 0);
}

TEST_F(ReadOnlyFolderTest, AWalWithoutItsIndexCannotBeReadAndStopsWithTheLoadReport) {
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  {
    fixtures::JournalWriter writer(sharedStore(), layout);
    writer.addNote({.info = "only in the wal"});
    // A crashed app leaves its -wal; keep a copy as it was before the close.
    std::filesystem::copy_file(sharedStore().string() + "-wal", directory_ / "crashed-wal");
  }
  std::filesystem::copy_file(directory_ / "crashed-wal", sharedStore().string() + "-wal",
                             std::filesystem::copy_options::overwrite_existing);
  std::filesystem::remove(sharedStore().string() + "-shm");
  // Reading the main file alone would silently lose the commits in the WAL.
  const int status = readWithoutWriteAccess(group(), [] {
    ::close(STDERR_FILENO);
    CoreDataStack::makeForTesting()->persistentContainer();
    return true;
  });
  EXPECT_NE(status, 0);
  EXPECT_NE(status, 3) << "could not drop privileges";
}

}  // namespace
}  // namespace quillan::store
