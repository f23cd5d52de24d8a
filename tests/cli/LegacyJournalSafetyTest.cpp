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

TEST_F(LegacyJournalSafety, TheDemoNeverTouchesTheUsersLegacyJournal) {
  const auto before = testing::readText(legacy());
  const auto result = runCommand({"demo", "--output", (root_ / "gallery").string(), "--now", "2026-11-22T09:00:00Z"},
                                 userEnvironment());
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_EQ(result.err.find("Quillan.sqlite"), std::string::npos) << "no move was tried: " << result.err;
  ASSERT_TRUE(fs::exists(legacy()));
  EXPECT_EQ(testing::readText(legacy()), before);
}

TEST_F(LegacyJournalSafety, AJournalNamedByItsGroupContainerIsPairedWithItsOwnLegacyFolder) {
  const auto elsewhere = root_ / "elsewhere" / "group";
  ASSERT_EQ(runCommand({"sample-journal", "--group-container", elsewhere.string()}, userEnvironment()).exitStatus, 0);
  const auto result = runCommand({"render", "--kind", "OnThisDayWidget", "--group-container", elsewhere.string()},
                                 userEnvironment());
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_EQ(result.err.find("Quillan.sqlite"), std::string::npos) << result.err;
  EXPECT_TRUE(fs::exists(legacy())) << "the default legacy folder belongs to the default group container";
}

TEST_F(LegacyJournalSafety, TheDefaultGroupContainerStillTakesInItsLegacyJournal) {
  fs::create_directories(dataHome() / "quillan-widgets" / "group.com.tarvelo.Quillan");
  const auto result = runCommand(
      {"render", "--kind", "ComposeButtonWidget", "--seed", "1", "--now", "2026-11-22T09:00:00Z"}, userEnvironment());
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_EQ(result.err.find("Quillan.sqlite"), std::string::npos) << "the move worked: " << result.err;
  EXPECT_FALSE(fs::exists(legacy()));
  EXPECT_TRUE(fs::exists(dataHome() / "quillan-widgets" / "group.com.tarvelo.Quillan" / "Quillan.sqlite"));
}

}  // namespace
}  // namespace quillan::cli
