#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "fixtures/JournalWriter.hpp"
#include "support/FileContents.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
namespace fs = std::filesystem;

// A user's data home with a real legacy journal in the default
// application-support folder: only a widget read of the journal it belongs
// beside may move it, and nothing may delete it otherwise.
class LegacyJournalSafety : public ::testing::Test {
 protected:
  LegacyJournalSafety() {
    fs::create_directories(legacy().parent_path());
    fixtures::JournalWriter writer(legacy());
    // 2026-11-21T12:00:00Z: a note of yesterday, so today's compose button is orange.
    writer.addNote({.date = platform::Date::fromReferenceSeconds(816955200), .info = "a year of my life"});
  }
  fs::path dataHome() const { return root_ / "data"; }
  fs::path legacy() const { return dataHome() / "quillan-widgets" / "Application Support" / "Quillan.sqlite"; }
  std::vector<std::string> userEnvironment() const { return {"XDG_DATA_HOME=" + dataHome().string()}; }

  testing::TemporaryFolder folder_{"quillan-legacy"};
  const fs::path& root_ = folder_.path();
};

// Each command runs where the one before left the files; the last moves the journal.
TEST_F(LegacyJournalSafety, OnlyAWidgetReadOfTheDefaultGroupContainerMovesIt) {
  const auto elsewhere = (root_ / "elsewhere" / "group").string();
  ASSERT_EQ(runCommand({"sample-journal", "--group-container", elsewhere}, userEnvironment()).exitStatus, 0);
  const auto defaultGroup = dataHome() / "quillan-widgets" / "group.com.tarvelo.Quillan";
  fs::create_directories(defaultGroup);
  const auto before = testing::readText(legacy());
  const struct {
    const char* name;
    std::vector<std::string> arguments;
    bool moves;
  } runs[] = {
      {"the demo", {"demo", "--output", (root_ / "gallery").string(), "--now", "2026-11-22T09:00:00Z"}, false},
      // The default legacy folder belongs to the default group container.
      {"another group container", {"render", "--kind", "OnThisDayWidget", "--group-container", elsewhere}, false},
      {"the default group container",
       {"render", "--kind", "ComposeButtonWidget", "--seed", "1", "--now", "2026-11-22T09:00:00Z"},
       true},
  };
  for (const auto& run : runs) {
    const auto result = runCommand(run.arguments, userEnvironment());
    ASSERT_EQ(result.exitStatus, 0) << run.name << ": " << result.err;
    EXPECT_EQ(result.err.find("Quillan.sqlite"), std::string::npos) << run.name << ": no move, or one that failed";
    EXPECT_EQ(fs::exists(legacy()), !run.moves) << run.name;
    EXPECT_EQ(fs::exists(defaultGroup / "Quillan.sqlite"), run.moves) << run.name;
    EXPECT_TRUE(run.moves || testing::readText(legacy()) == before) << run.name << " changed the legacy journal";
  }
}

}  // namespace
}  // namespace quillan::cli
