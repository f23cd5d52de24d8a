#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>

#include "StoreTestSupport.hpp"
#include "store/CoreDataStack.hpp"
#include "store/TemporaryStoreCopy.hpp"

namespace quillan::store {
namespace {

using namespace testing;

constexpr int kNotes = 20000;

// The legacy move killed at any moment: the next run finishes or gives up the
// move, and the group container then holds the journal and nothing else.
class LegacyMoveCrashTest : public StoreFolders {
 protected:
  void resetToLegacyState() {
    std::filesystem::remove_all(group());
    std::filesystem::create_directories(group());
    std::filesystem::copy_file(directory_ / "template.sqlite", legacyStore(),
                               std::filesystem::copy_options::overwrite_existing);
  }

  static pid_t startMove() {
    const pid_t child = ::fork();
    if (child == 0) {
      CoreDataStack::makeForTesting()->persistentContainer();
      ::_exit(0);
    }
    return child;
  }
};

TEST_F(LegacyMoveCrashTest, KilledAtRandomPointsTheNextRunLeavesOnlyTheJournal) {
  {
    fixtures::JournalWriter writer(directory_ / "template.sqlite");
    writer.begin();
    for (int i = 0; i < kNotes; ++i) writer.addNote({.info = std::string(200, 'n')});
    writer.commit();
  }
  resetToLegacyState();
  const auto started = std::chrono::steady_clock::now();
  ::waitpid(startMove(), nullptr, 0);
  const auto moveTime = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                              started);
  ASSERT_FALSE(std::filesystem::exists(legacyStore()));

  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed) + ", one move takes " + std::to_string(moveTime.count()) + " us");
  std::mt19937 random(seed);
  std::uniform_int_distribution<long> moment(0, moveTime.count() * 5 / 4);
  for (int round = 0; round < 24; ++round) {
    resetToLegacyState();
    const auto delay = moment(random);
    const pid_t child = startMove();
    ::usleep(static_cast<useconds_t>(delay));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);

    auto next = CoreDataStack::makeForTesting();
    EXPECT_EQ(fetchNotes(*next->persistentContainer().viewContext()).size(), static_cast<std::size_t>(kNotes))
        << "killed after " << delay << " us";
    EXPECT_FALSE(std::filesystem::exists(legacyStore()));
    // The run that gave up the move deleted the legacy file: what is left must be the whole journal.
    EXPECT_EQ(fetchNotes(*contextFor(sharedStore())).size(), static_cast<std::size_t>(kNotes))
        << "the journal left, killed after " << delay << " us";
    for (const auto& entry : std::filesystem::directory_iterator(group())) {
      const auto name = entry.path().filename().string();
      EXPECT_EQ(name.rfind("Quillan.sqlite", 0), 0u) << name << " left behind, killed after " << delay << " us";
    }
  }
}

TEST_F(LegacyMoveCrashTest, OnlyCopiesWhoseWriterIsGoneAreRemoved) {
  // Writers that have finished: their pids are gone and nothing holds their locks.
  const auto finishedWriter = [] {
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(0);
    ::waitpid(pid, nullptr, 0);
    return pid;
  };
  const auto abandoned = TemporaryStoreCopy::pathFor(sharedStore(), finishedWriter()).string();
  for (const char* suffix : {"", "-wal", "-shm"}) std::ofstream(abandoned + suffix) << "half";
  // A copy already renamed into place leaves only its companions.
  const auto renamed = TemporaryStoreCopy::pathFor(sharedStore(), finishedWriter()).string() + "-shm";
  std::ofstream(renamed) << "left after the rename";

  // A writer still copying.
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t copying = ::fork();
  if (copying == 0) {
    const TemporaryStoreCopy copy(sharedStore());
    [[maybe_unused]] const auto written = ::write(ready[1], "x", 1);
    ::pause();
    ::_exit(0);
  }
  char byte;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  const auto inProgress = TemporaryStoreCopy::pathFor(sharedStore(), copying);
  std::ofstream(group() / ".Quillan.sqlite.migrating-notes") << "not ours: no pid";

  TemporaryStoreCopy::removeAbandoned(sharedStore());
  for (const auto& gone : {abandoned, abandoned + "-wal", abandoned + "-shm", renamed}) {
    EXPECT_FALSE(std::filesystem::exists(gone)) << gone;
  }
  EXPECT_TRUE(std::filesystem::exists(inProgress)) << "a live writer's copy stays";
  EXPECT_TRUE(std::filesystem::exists(group() / ".Quillan.sqlite.migrating-notes"));

  ::kill(copying, SIGKILL);
  ::waitpid(copying, nullptr, 0);
  TemporaryStoreCopy::removeAbandoned(sharedStore());
  EXPECT_FALSE(std::filesystem::exists(inProgress)) << "once its writer is killed it is abandoned";
  ::close(ready[0]);
  ::close(ready[1]);
}

}  // namespace
}  // namespace quillan::store
