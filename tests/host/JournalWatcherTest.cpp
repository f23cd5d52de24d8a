#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>

#include "LiveHostFixture.hpp"
#include "host/JournalWatcher.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::host {
namespace {

using namespace std::chrono_literals;
using quillan::testing::eventually;

class JournalWatcherTest : public ::testing::Test {
 protected:
  void append(const std::string& name) {
    std::ofstream file(folder_ / name, std::ios::app);
    file << "x";
  }

  quillan::testing::TemporaryFolder scratch_{"quillan-watch"};
  const std::filesystem::path folder_ = scratch_.path();
  std::atomic<int> commits_{0};
};

TEST_F(JournalWatcherTest, ABurstOfWritesIsOneCommit) {
  JournalWatcher watcher(folder_ / "Quillan.sqlite", [this] { ++commits_; }, {50ms, 1000ms});
  for (int write = 0; write < 5; ++write) append("Quillan.sqlite-wal");
  append("Quillan.sqlite");
  EXPECT_TRUE(eventually([&] { return commits_ == 1; }, 5s));
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(commits_, 1);
  append("Quillan.sqlite-wal");
  EXPECT_TRUE(eventually([&] { return commits_ == 2; }, 5s));
}

TEST_F(JournalWatcherTest, ReadersAndOtherFilesAreNotCommits) {
  JournalWatcher watcher(folder_ / "Quillan.sqlite", [this] { ++commits_; }, {20ms, 100ms});
  append("Quillan.sqlite-shm");
  append("Other.sqlite-wal");
  append("Quillan.sqlite.bak");
  // A connection opened for writing creates an empty WAL and removes it on close.
  { std::ofstream empty(folder_ / "Quillan.sqlite-wal"); }
  std::filesystem::remove(folder_ / "Quillan.sqlite-wal");
  std::this_thread::sleep_for(300ms);
  EXPECT_EQ(commits_, 0);
}

TEST_F(JournalWatcherTest, ASteadyTrickleStillReportsWithinTheLongestWait) {
  JournalWatcher watcher(folder_ / "Quillan.sqlite", [this] { ++commits_; }, {100ms, 300ms});
  const auto start = std::chrono::steady_clock::now();
  while (commits_ == 0 && std::chrono::steady_clock::now() - start < 5s) {
    append("Quillan.sqlite-wal");
    std::this_thread::sleep_for(20ms);
  }
  EXPECT_GE(commits_, 1);
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
