#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <optional>

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

class ReadOnlyFolderTest : public StoreFolders {
 protected:
  std::filesystem::path journal() const { return sharedStore(); }

  static bool readsExactly(const std::vector<std::string>& expected) {
    auto stack = CoreDataStack::makeForTesting();
    return infos(stack->persistentContainer()) == expected;
  }
};

// Closed cleanly the journal is read immutable; kept open by the app, through its WAL. Either way the
// reader writes nothing.
TEST_F(ReadOnlyFolderTest, AJournalIsReadWhetherTheAppClosedItOrHasItOpen) {
  for (const bool appHasItOpen : {false, true}) {
    SCOPED_TRACE(appHasItOpen ? "open" : "closed");
    std::filesystem::remove_all(group());
    SetUp();
    fixtures::JournalLayout layout;
    if (appHasItOpen) layout.walAutocheckpoint = 0;
    auto app = std::make_optional<fixtures::JournalWriter>(journal(), layout);
    app->addNote({.info = "committed"});
    app->addNote({.info = "still in the wal, if open"});
    if (!appHasItOpen) app.reset();
    ASSERT_EQ(std::filesystem::exists(journal().string() + "-wal") &&
                  std::filesystem::exists(journal().string() + "-shm"),
              appHasItOpen);
    const auto before = readText(journal());
    EXPECT_EQ(readWithoutWriteAccess(group(),
                                     [this] {
                                       return readsExactly({"committed", "still in the wal, if open"});
                                     }),
              0);
    EXPECT_TRUE(readText(journal()) == before) << "the journal changed";
    EXPECT_EQ(std::filesystem::exists(journal().string() + "-wal"), appHasItOpen) << "the reader created a file";
  }
}

TEST_F(ReadOnlyFolderTest, AWalWithoutItsIndexCannotBeReadAndStopsWithTheLoadReport) {
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  {
    fixtures::JournalWriter writer(journal(), layout);
    writer.addNote({.info = "only in the wal"});
    // A crashed app leaves its -wal; keep a copy as it was before the close.
    std::filesystem::copy_file(journal().string() + "-wal", directory_ / "crashed-wal");
  }
  std::filesystem::copy_file(directory_ / "crashed-wal", journal().string() + "-wal",
                             std::filesystem::copy_options::overwrite_existing);
  std::filesystem::remove(journal().string() + "-shm");
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
