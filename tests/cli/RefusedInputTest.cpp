#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "support/CommandAnswers.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

namespace fs = std::filesystem;

// The files the questions of command_refusals.txt name as DIR/...; those that
// need no making are in tests/data/cli. The user's data home is DIR/home.
class RefusedInput : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new testing::TemporaryFolder("quillan-refused");
    ASSERT_EQ(::mkfifo(path("tree.fifo").c_str(), 0600), 0);
    writeTree("large.json", 4 * 1024 * 1024 + 1);
    writeTree("limit.json", 4 * 1024 * 1024);
    std::ofstream(path("deep.json")) << std::string(100'000, '[');
    std::string views;
    // Past the views' depth limit, well within the JSON nesting any reader accepts.
    for (int i = 0; i < 100; ++i) views += R"({"type": "VStack", "children": [)";
    views += R"({"type": "Spacer"})";
    for (int i = 0; i < 100; ++i) views += "]}";
    std::ofstream(path("views.json")) << views;
    fs::create_directories(path("suite"));
    fs::create_directories(path("journal"));
    std::ofstream(path("journal/Quillan.sqlite")) << "";
    const auto config = [](const std::string& locales) {
      return R"({"journal": ")" + path("journal") + R"(", "now": "2026-11-22T09:00:00+01:00",
          "timeZone": "Europe/Berlin", "seed": 1, "matrix": {"kinds": ["StreakWidget"], "colorSchemes": ["light"],
          "renderingModes": ["fullColor"], "platformVersions": ["17.0"], "devices": ["393x852"], "locales": )" +
             locales + "}}";
    };
    std::ofstream(path("valid.json")) << config(R"(["en_US"])");
    std::ofstream(path("clashing.json")) << config(R"(["de_DE", "de-DE"])");
    std::ofstream(path("array.json")) << "[]";
    // Journals the extension stops on, or logs about.
    fs::create_directories(path("not-a-database"));
    std::ofstream(path("not-a-database/Quillan.sqlite")) << "this is not a database, it is a shopping list";
    fs::create_directories(path("not-markdown"));
    fixtures::JournalWriter(path("not-markdown/Quillan.sqlite"))
        .addNote({.date = platform::ISO8601::parse("2025-11-22T09:00:00Z"), .info = std::string("caf\xE9 au lait")});
  }
  static void TearDownTestSuite() { delete folder_; }

  // A valid tree padded with whitespace to `size` bytes: the size alone decides.
  static void writeTree(const std::string& name, std::size_t size) {
    const std::string tree = R"({"type": "Text", "text": "padded"})";
    std::ofstream(path(name)) << tree << std::string(size - tree.size(), ' ');
  }
  static std::string path(const std::string& name) { return (folder_->path() / name).string(); }

  static inline testing::TemporaryFolder* folder_ = nullptr;
};

TEST_F(RefusedInput, BadValuesAndFilesAreOneLineNamingTheOptionAndValidOnesAreTaken) {
  const testing::Placeholders placeholders = {{"DIR", folder_->path().string()}, {"DATA", QUILLAN_TEST_DATA_DIR}};
  const std::vector<std::string> dataHome = {"XDG_DATA_HOME=" + path("home")};
  testing::expectGoldenAnswers("command_refusals.txt", [&](const std::string& question) {
    return testing::commandAnswer(question, placeholders, /*printed=*/false, dataHome);
  });
  EXPECT_FALSE(fs::exists(path("no")));
  EXPECT_TRUE(fs::is_empty(path("suite")));
  // A long value is cut, the line kept readable.
  EXPECT_LT(testing::runCommand({"timeline", "--kind", std::string(100000, 'k')}).err.size(), 400u);
}

}  // namespace
}  // namespace quillan::cli
