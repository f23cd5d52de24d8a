#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/RunCommand.hpp"
#include "support/SpawnedCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
namespace fs = std::filesystem;

constexpr const char* kNow = "2026-11-22T09:00:00Z";

std::string entriesOf(const fs::path& folder) {
  std::string names;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) names += entry.path().string() + " ";
  return names;
}

// A user's journal, the notes a replay adds to a copy of it, and a temporary
// folder of the test's own for the commands' private files.
class ScratchFolders : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(temporary());
    const auto journal = runCommand({"sample-journal", "--group-container", container().string(), "--now", kNow});
    ASSERT_EQ(journal.exitStatus, 0) << journal.err;
    std::ofstream(events())
        << R"([{"at": "2026-11-22T09:14:00Z", "note": {"date": "2026-11-22T09:14:00Z", "text": "Tea"}}])";
  }

  // A replay long enough to be running when a signal comes, or a short one.
  std::vector<std::string> simulate(const std::string& to, const std::string& output) const {
    std::vector<std::string> arguments = {"simulate", "--group-container", container().string(), "--kind"};
    arguments.insert(arguments.end(), {"StreakWidget", "--from", "2026-11-22T09:00:00Z", "--to", to, "--events"});
    arguments.insert(arguments.end(), {events().string(), "--output", (folder_.path() / output).string()});
    return arguments;
  }
  std::vector<std::string> demo(const std::string& output) const {
    return {"demo", "--now", kNow, "--output", (folder_.path() / output).string()};
  }

  std::string temporaryVariable() const { return "TMPDIR=" + temporary().string(); }
  fs::path temporary() const { return folder_.path() / "tmp"; }
  fs::path container() const { return folder_.path() / "group"; }
  fs::path events() const { return folder_.path() / "events.json"; }

 private:
  testing::TemporaryFolder folder_{"quillan-scratch"};
};

TEST_F(ScratchFolders, AreRemovedWhenTheCommandEndsOrASignalEndsIt) {
  auto noJournal = simulate("2026-11-22T12:00:00Z", "failed");
  noJournal[2] = temporary().string();  // --group-container: nothing to copy
  struct Run {
    std::vector<std::string> arguments;
    int signal;  // sent once the command's private folder is there; 0: none
    int exitStatus;
  };
  const std::vector<Run> runs = {
      {simulate("2026-11-22T12:00:00Z", "short"), 0, 0},
      {demo("gallery"), 0, 0},
      {noJournal, 0, 1},
      {simulate("2027-02-20T09:00:00Z", "long-term"), SIGTERM, 128 + SIGTERM},
      {simulate("2027-02-20T09:00:00Z", "long-int"), SIGINT, 128 + SIGINT},
      {demo("gallery-term"), SIGTERM, 128 + SIGTERM},
      {demo("gallery-int"), SIGINT, 128 + SIGINT},
      {demo("gallery-abort"), SIGABRT, 128 + SIGABRT},
  };
  for (const auto& run : runs) {
    const auto label = run.arguments.front() + " with signal " + std::to_string(run.signal);
    int exitStatus = -1;
    if (run.signal == 0) {
      exitStatus = runCommand(run.arguments, {temporaryVariable()}).exitStatus;
    } else {
      testing::SpawnedCommand command(run.arguments, {temporaryVariable()});
      ASSERT_TRUE(testing::eventually([this] { return !fs::is_empty(temporary()); })) << label;
      command.signal(run.signal);
      exitStatus = command.wait();
    }
    EXPECT_EQ(exitStatus, run.exitStatus) << label;
    EXPECT_EQ(entriesOf(temporary()), "") << label << " left its private files";
    fs::remove_all(temporary());
    fs::create_directories(temporary());
  }
}

}  // namespace
}  // namespace quillan::cli
