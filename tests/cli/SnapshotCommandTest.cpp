#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "fixtures/JournalAppender.hpp"
#include "render/PixelImage.hpp"
#include "support/CommandAnswers.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Unprivileged.hpp"

namespace quillan::cli {
namespace {

using testing::contentsOf;
using testing::readText;
using testing::runCommand;
using testing::TemporaryFolder;
using Json = nlohmann::json;
namespace fs = std::filesystem;

constexpr const char* kNow = "2026-11-22T09:00:00+01:00";
constexpr const char* kComposeCase = "ComposeButtonWidget_light_fullColor_17.0_393x852_en-US";

// A suite over a sample journal of its own, recorded first with the default config.
class Snapshot : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto journal = runCommand({"sample-journal", "--group-container", container().string(), "--now", kNow,
                                     "--time-zone", "Europe/Berlin"});
    ASSERT_EQ(journal.exitStatus, 0) << journal.err;
    const auto recorded = runCommand({"snapshot", "record", "--dir", dir().string(), "--group-container",
                                      container().string(), "--now", kNow, "--time-zone", "Europe/Berlin", "--locale",
                                      "en_US", "--seed", "3"});
    ASSERT_EQ(recorded.exitStatus, 0) << recorded.err;
  }

  testing::CommandResult snapshot(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--dir", dir().string()});
    arguments.insert(arguments.begin(), "snapshot");
    return runCommand(arguments);
  }

  fs::path outside() const { return folder_.path() / "outside"; }
  fs::path container() const { return folder_.path() / "group"; }
  fs::path dir() const { return folder_.path() / "suite"; }
  fs::path suiteParent() const { return folder_.path(); }
  fs::path recording(const std::string& name, const char* extension) const {
    return dir() / "cases" / (name + extension);
  }

 private:
  TemporaryFolder folder_;
};

TEST_F(Snapshot, TheFirstRecordWritesItsConfigAndAVerifyRightAfterPasses) {
  // The environment options' journal (GROUP), clock, zone, seed and locale, and the default matrix.
  testing::expectGoldenJson(Json::parse(testing::replacedAll(readText(dir() / "snapshots.json"), container().string(),
                                                             "GROUP")),
                            "snapshot_first_config.json");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir() / "cases"), fs::directory_iterator()), 20);

  // The clock, zone and seed are the config's, whatever the command line says now.
  const auto verified = runCommand({"snapshot", "verify", "--dir", dir().string(), "--time-zone", "Asia/Tokyo",
                                    "--seed", "99"});
  EXPECT_EQ(verified.exitStatus, 0) << verified.out << verified.err;
  EXPECT_EQ(verified.out, "10 of 10 cases match\n");
  EXPECT_FALSE(fs::exists(dir() / "report.html")) << "a run where all match writes nothing";
}

TEST_F(Snapshot, OnePixelOffFailsAtFullPrecisionAndPassesAt0999) {
  const auto picture = recording(kComposeCase, ".png");
  auto image = render::readPNG(picture);
  auto& pixel = image.at(image.width / 2, image.height / 2);
  pixel.red = static_cast<std::uint8_t>(255 - pixel.red);
  render::writePNG(image, picture);

  const auto strict = snapshot({"verify"});
  EXPECT_EQ(strict.exitStatus, 1) << strict.err;
  EXPECT_NE(strict.out.find(std::string("FAIL ") + kComposeCase), std::string::npos) << strict.out;
  EXPECT_NE(strict.out.find("9 of 10 cases match"), std::string::npos) << strict.out;
  const auto diff = dir() / "diffs" / (std::string(kComposeCase) + ".png");
  EXPECT_TRUE(fs::is_regular_file(diff));
  EXPECT_NE(readText(dir() / "report.html").find(kComposeCase), std::string::npos);

  const auto lenient = snapshot({"verify", "--precision", "0.999"});
  EXPECT_EQ(lenient.exitStatus, 0) << lenient.out;
  EXPECT_FALSE(fs::exists(diff)) << "a difference image of the run before is left";
  EXPECT_FALSE(fs::exists(dir() / "report.html")) << "the report of the run before is left";
}

TEST_F(Snapshot, AWidgetsFatalErrorEndsVerifyAsItWouldInProcess) {
  fixtures::JournalAppender(container() / "Quillan.sqlite").addNote({.date = std::nullopt, .info = std::string("x")});
  const auto result = snapshot({"verify", "--jobs", "2"});
  EXPECT_EQ(result.exitStatus, 128 + SIGABRT) << result.out << result.err;
  // Said once, by the case that stopped, as a command drawing in process would.
  const auto said = result.err.find("Fatal error");
  EXPECT_NE(said, std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("Fatal error", said + 1), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("worker"), std::string::npos) << result.err;
  // What was printed before the drawing is lost with the abort, not printed by a worker.
  const auto record = runCommand({"snapshot", "record", "--dir", (suiteParent() / "second").string(),
                                  "--group-container", container().string(), "--jobs", "2"});
  EXPECT_EQ(record.exitStatus, 128 + SIGABRT) << record.out << record.err;
  EXPECT_EQ(record.out, "");
}

TEST_F(Snapshot, RecordKeepsWhatIsRecordedUnlessNamedAndAMissingRecordingFails) {
  const auto streak = std::string("StreakWidget_dark_fullColor_17.0_393x852_en-US");
  std::ofstream(recording(kComposeCase, ".json")) << "edited";
  std::ofstream(recording(streak, ".json")) << "edited";
  fs::remove(recording("OnThisDayWidget_light_fullColor_17.0_393x852_en-US", ".png"));

  const auto missing = snapshot({"verify", "--jobs", "1"});
  EXPECT_EQ(missing.exitStatus, 1);
  // Workers that finish out of order print and report the cases in order all the same.
  const auto report = readText(dir() / "report.html");
  const auto inThree = snapshot({"verify", "--jobs", "3"});
  EXPECT_EQ(inThree.out, missing.out);
  EXPECT_EQ(readText(dir() / "report.html"), report);

  ASSERT_EQ(snapshot({"record", "--case", streak}).exitStatus, 0);
  EXPECT_EQ(readText(recording(kComposeCase, ".json")), "edited");
  EXPECT_NE(readText(recording(streak, ".json")), "edited");
  // Without names only the missing are recorded.
  ASSERT_EQ(snapshot({"record"}).exitStatus, 0);
  EXPECT_TRUE(fs::exists(recording("OnThisDayWidget_light_fullColor_17.0_393x852_en-US", ".png")));
  EXPECT_EQ(readText(recording(kComposeCase, ".json")), "edited");
  ASSERT_EQ(snapshot({"record", "--all", "--jobs", "3"}).exitStatus, 0);
  EXPECT_EQ(snapshot({"verify", "--jobs", "1"}).exitStatus, 0) << "a case drawn after others draws differently";
}

TEST_F(Snapshot, AnEntryThatIsASymbolicLinkIsRefusedAndNothingIsWrittenThroughIt) {
  // A failing case makes verify write its difference image and the report.
  std::ofstream(recording(kComposeCase, ".json")) << "edited";
  fs::create_directories(outside());
  std::ofstream(outside() / "file") << "outside";
  const auto before = contentsOf(outside());
  const std::string linkedEntries[] = {"cases/" + std::string(kComposeCase) + ".png",
                                       "cases/" + std::string(kComposeCase) + ".json",
                                       "report.html",
                                       "snapshots.json",
                                       "diffs",
                                       "cases"};
  for (const auto& entry : linkedEntries) {
    const auto path = dir() / entry;
    const auto kept = suiteParent() / "kept";
    if (fs::exists(path)) fs::rename(path, kept);
    const bool isFolder = entry == "diffs" || entry == "cases";
    fs::create_symlink(isFolder ? outside() : outside() / "file", path);
    for (const auto* command : {"snapshot verify --dir DIR", "snapshot record --all --dir DIR"}) {
      EXPECT_EQ(testing::commandAnswer(command, {{"DIR", dir().string()}}),
                "exit 2: quillan-widgets: --dir: a symbolic link in the suite, not followed: \"DIR/" + entry +
                    "\" (replace it with a file or folder of its own)");
    }
    EXPECT_EQ(contentsOf(outside()), before) << "written through " << entry;
    fs::remove(path);
    if (fs::exists(kept)) fs::rename(kept, path);
  }
}

TEST_F(Snapshot, AReadOnlySuiteIsVerifiedWithoutWritingAndOneThatMustBeWrittenIsExitTwo) {
  // The unprivileged user reads everything and writes nowhere (root would
  // write anyway, hence the other user).
  ::chmod(suiteParent().c_str(), 0755);
  ::chmod(dir().c_str(), 0555);
  struct Run {
    std::string edit;  // written over the compose case's view tree, when not empty
    int exitStatus;
    std::string error;
  };
  const Run runs[] = {
      {"", 0, ""},
      {"edited", 2, "quillan-widgets: --dir: cannot write: \"" + (dir() / "diffs").string() + "\""},
  };
  for (const auto& run : runs) {
    if (!run.edit.empty()) std::ofstream(recording(kComposeCase, ".json")) << run.edit;
    const auto before = contentsOf(dir());
    EXPECT_EQ(testing::runUnprivileged([&] {
                const auto result = runCommand({"snapshot", "verify", "--dir", dir().string()});
                std::cerr << result.err;
                // One complaint, not a second one after it.
                return result.exitStatus == run.exitStatus && result.err.rfind(run.error, 0) == 0 &&
                       result.err.find("quillan-widgets: ", run.error.size()) == std::string::npos;
              }),
              0)
        << run.edit;
    EXPECT_EQ(contentsOf(dir()), before) << "the suite was written";
  }
  ::chmod(dir().c_str(), 0755);
}

}  // namespace
}  // namespace quillan::cli
