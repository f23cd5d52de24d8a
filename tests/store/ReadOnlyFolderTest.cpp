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

using ReadOnlyFolderTest = StoreFolders;

// A journal the app closed cleanly is read immutable, and one it has open
// through its WAL. A WAL without its index cannot be read: reading the main
// file alone would silently lose the commits in the WAL, so the read stops
// with the load report.
TEST_F(ReadOnlyFolderTest, AJournalIsReadAsTheAppLeftItOrNotAtAll) {
  const struct {
    const char* name;
    bool appOpen, indexLost;
  } states[] = {{"closed cleanly", false, false}, {"open in the app", true, false}, {"crashed", true, true}};
  const auto wal = sharedStore().string() + "-wal";
  for (const auto& state : states) {
    SCOPED_TRACE(state.name);
    std::filesystem::remove_all(group());
    std::filesystem::create_directories(group());
    fixtures::JournalLayout layout;
    layout.walAutocheckpoint = 0;
    std::optional<fixtures::JournalWriter> app(std::in_place, sharedStore(), layout);
    app->addNote({.info = "committed"});
    app->addNote({.info = "maybe only in the wal"});
    // A crashed app leaves its -wal: a copy as it was before the close.
    if (state.indexLost)
      std::filesystem::copy_file(wal, directory_ / "crashed-wal", std::filesystem::copy_options::overwrite_existing);
    if (!state.appOpen || state.indexLost) app.reset();
    if (state.indexLost) {
      std::filesystem::copy_file(directory_ / "crashed-wal", wal, std::filesystem::copy_options::overwrite_existing);
      std::filesystem::remove(sharedStore().string() + "-shm");
    }
    ASSERT_EQ(std::filesystem::exists(wal), state.appOpen);
    const auto before = readText(sharedStore());
    const int status = readWithoutWriteAccess(group(), [&state] {
      if (state.indexLost) ::close(STDERR_FILENO);
      // A crashed app's journal must not be read at all.
      const auto read = infos(CoreDataStack::makeForTesting()->persistentContainer());
      const bool readWhole = read == std::vector<std::string>{"committed", "maybe only in the wal"};
      return readWhole || state.indexLost;
    });
    EXPECT_EQ(status != 0, state.indexLost);
    EXPECT_NE(status, 3) << "could not drop privileges";
    if (state.appOpen) continue;
    EXPECT_EQ(readText(sharedStore()), before);
    EXPECT_FALSE(std::filesystem::exists(wal)) << "the reader created nothing";
  }
}

}  // namespace
}  // namespace quillan::store
