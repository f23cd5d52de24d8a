#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
using Words = std::vector<std::string>;
namespace fs = std::filesystem;

class CommandModules : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto result = runCommand({"sample-journal", "--group-container", container().string(), "--seed", "3"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
  }
  fs::path container() const { return folder_.path() / "group"; }
  Words render(const std::string& format) const {
    Words arguments = {"--group-container", container().string(), "--now", "2026-11-22T09:00:00Z", "render"};
    arguments.insert(arguments.end(), {"--kind", "StreakWidget", "--format", format, "--output", output(format)});
    return arguments;
  }
  std::string output(const std::string& format) const { return (folder_.path() / ("streak." + format)).string(); }
  testing::TemporaryFolder folder_;
};

// The dynamic loader reports every library it loads (LD_DEBUG=libs) on
// standard error: only a command that draws loads the drawing stack, and none
// of these the server's.
TEST_F(CommandModules, OnlyCommandsThatDrawLoadTheDrawingStackAndNoneTheServer) {
  const Words drawing = {"quillan-drawing.so", "libpango", "libcairo", "libfontconfig"};
  const Words serving = {"quillan-serving", "libcpp-httplib", "libssl"};
  for (const auto& [arguments, draws] :
       std::vector<std::pair<Words, bool>>{{{"list"}, false},
                                           {{"timeline", "--kind", "StreakWidget"}, false},
                                           {render("json"), false},
                                           {render("png"), true}}) {
    const auto result = runCommand(arguments, {"LD_DEBUG=libs"});
    EXPECT_EQ(result.exitStatus, 0) << result.err.substr(result.err.size() > 2000 ? result.err.size() - 2000 : 0);
    for (const auto& library : drawing)
      EXPECT_EQ(result.err.find(library) != std::string::npos, draws)
          << ::testing::PrintToString(arguments) << " " << library;
    for (const auto& library : serving) EXPECT_EQ(result.err.find(library), std::string::npos) << library;
  }
  EXPECT_TRUE(fs::exists(output("png")));
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
