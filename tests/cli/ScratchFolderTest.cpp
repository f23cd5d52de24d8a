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

bool holdsEntryStartingWith(const fs::path& folder, const std::string& prefix) {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.path().filename().string().rfind(prefix, 0) == 0) return true;
  }
  return false;
}

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
    std::ofstream(events()) << R"([{"at": "2026-11-22T09:14:00Z", "note": {"date": "2026-11-22T09:14:00Z", "text": "Tea"}}])";
  }

  // A replay long enough to be running when a signal comes, or a short one.
  std::vector<std::string> simulate(const std::string& to, const std::string& output) const {
    return {"simulate", "--group-container", container().string(), "--kind", "StreakWidget", "--from",
            "2026-11-22T09:00:00Z", "--to", to, "--events", events().string(), "--output",
            (folder_.path() / output).string()};
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

TEST_F(ScratchFolders, AreRemovedWhenTheCommandEnds) {
  auto noJournal = simulate("2026-11-22T12:00:00Z", "failed");
  noJournal[2] = temporary().string();  // --group-container: nothing to copy
  const std::vector<std::pair<std::vector<std::string>, int>> runs = {
      {simulate("2026-11-22T12:00:00Z", "short"), 0}, {demo("gallery"), 0}, {noJournal, 1}};
  for (const auto& [arguments, exitStatus] : runs) {
    const auto result = runCommand(arguments, {temporaryVariable()});
    EXPECT_EQ(result.exitStatus, exitStatus) << arguments.front() << ": " << result.err;
    EXPECT_TRUE(fs::is_empty(temporary())) << arguments.front() << " left its private files";
  }
}

TEST_F(ScratchFolders, AreRemovedWhenASignalEndsTheCommand) {
  struct Run {
    std::vector<std::string> arguments;
    std::string scratchPrefix;  // what the command makes in the temporary folder
    int signal;
  };
  const std::vector<Run> runs = {
      {simulate("2027-02-20T09:00:00Z", "long-term"), "quillan-widgets-journal", SIGTERM},
      {simulate("2027-02-20T09:00:00Z", "long-int"), "quillan-widgets-journal", SIGINT},
      {demo("gallery-term"), "quillan-widgets-demo", SIGTERM},
      {demo("gallery-int"), "quillan-widgets-demo", SIGINT},
  };
  for (const auto& run : runs) {
    const auto label = run.arguments.front() + " ended by signal " + std::to_string(run.signal);
    testing::SpawnedCommand command(run.arguments, {temporaryVariable()});
    ASSERT_TRUE(testing::eventually([&] { return holdsEntryStartingWith(temporary(), run.scratchPrefix); }))
        << label;
    command.signal(run.signal);
    EXPECT_EQ(command.wait(), 128 + run.signal) << label << ": not ended by the signal";
    EXPECT_EQ(entriesOf(temporary()), "") << label << " left its private files";
    fs::remove_all(temporary());
    fs::create_directories(temporary());
  }
}

}  // namespace
}  // namespace quillan::cli
