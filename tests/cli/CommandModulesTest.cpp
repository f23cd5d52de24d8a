#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
namespace fs = std::filesystem;

// The dynamic loader's report of every library it loads (LD_DEBUG=libs), on stderr.
std::string librariesLoadedBy(const std::vector<std::string>& arguments) {
  const auto result = runCommand(arguments, {"LD_DEBUG=libs"});
  EXPECT_EQ(result.exitStatus, 0) << result.err.substr(result.err.size() > 2000 ? result.err.size() - 2000 : 0);
  return result.err;
}

class CommandModules : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto result = runCommand({"sample-journal", "--group-container", container().string(), "--seed", "3"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
  }
  fs::path container() const { return folder_.path() / "group"; }
  std::vector<std::string> render(const std::string& format) const {
    return {"--group-container",
            container().string(),
            "--now",
            "2026-11-22T09:00:00Z",
            "render",
            "--kind",
            "StreakWidget",
            "--format",
            format,
            "--output",
            (folder_.path() / ("streak." + format)).string()};
  }
  testing::TemporaryFolder folder_;
};

TEST_F(CommandModules, CommandsThatDoNotDrawNeverLoadTheDrawingStackOrTheServer) {
  for (const auto& arguments : {std::vector<std::string>{"list"},
                                std::vector<std::string>{"timeline", "--kind", "StreakWidget"}, render("json")}) {
    const auto loaded = librariesLoadedBy(arguments);
    for (const char* library :
         {"quillan-drawing", "libpango", "libcairo", "libfontconfig", "quillan-serving", "libcpp-httplib", "libssl"}) {
      EXPECT_EQ(loaded.find(library), std::string::npos) << arguments.front() << " loaded " << library;
    }
  }
}

TEST_F(CommandModules, DrawingLoadsTheDrawingModuleButNotTheServer) {
  const auto loaded = librariesLoadedBy(render("png"));
  EXPECT_NE(loaded.find("quillan-drawing.so"), std::string::npos);
  EXPECT_NE(loaded.find("libpango"), std::string::npos);
  EXPECT_EQ(loaded.find("libcpp-httplib"), std::string::npos);
  EXPECT_TRUE(fs::exists(folder_.path() / "streak.png"));
}

TEST_F(CommandModules, ACommandWithoutItsModulesSaysWhatIsMissingInOneLine) {
  // A command copied away from its modules (a broken install) still lists and
  // prints trees, and refuses to draw with one line naming the module.
  const auto alone = folder_.path() / "bin" / "quillan-widgets";
  fs::create_directories(alone.parent_path());
  fs::copy_file(QUILLAN_CLI_PATH, alone);
  EXPECT_EQ(testing::runProgram(alone.string(), {"list"}).exitStatus, 0);
  const auto drawn = testing::runProgram(alone.string(), render("png"));
  EXPECT_EQ(drawn.exitStatus, 1);
  EXPECT_NE(drawn.err.find("cannot find quillan-drawing.so"), std::string::npos) << drawn.err;
  EXPECT_NE(drawn.err.find("reinstall"), std::string::npos) << drawn.err;
  EXPECT_EQ(drawn.err.find('\n'), drawn.err.size() - 1) << drawn.err;
  EXPECT_EQ(testing::runProgram(alone.string(), render("json")).exitStatus, 0);
}

}  // namespace
}  // namespace quillan::cli
