#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
namespace fs = std::filesystem;

const std::string kNow = "2026-11-22T09:00:00Z";
const std::vector<std::string> kMemoryKinds = {"OnThisDayWidget", "OTDComposeWidget"};
// Far above the fraction of a second these take, far below the minutes a
// text shaped whole took.
constexpr auto kGenerousBound = std::chrono::seconds(30);

// A group container whose journal holds one memory for kNow, with `text`.
class JournalWithMemory {
 public:
  explicit JournalWithMemory(const std::string& text) : folder_("quillan-hostile") {
    fixtures::JournalWriter writer(folder_.path() / "Quillan.sqlite");
    writer.addNote({.date = platform::ISO8601::parse("2025-11-22T08:00:00Z"), .info = text});
  }
  const fs::path& path() const { return folder_.path(); }

 private:
  testing::TemporaryFolder folder_;
};

struct TimedResult {
  testing::CommandResult result;
  std::chrono::steady_clock::duration took;
};

TimedResult timed(const std::vector<std::string>& arguments) {
  const auto start = std::chrono::steady_clock::now();
  testing::CommandResult result = runCommand(arguments);
  return {std::move(result), std::chrono::steady_clock::now() - start};
}

std::string repeated(std::string_view unit, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += unit;
  return text;
}

TEST(HostileNotes, DeeplyNestedMarkdownLeavesTheMemoryWidgetsDrawing) {
  for (const char* delimiter : {"*", "_"}) {
    const std::string run(100'000, *delimiter);
    const JournalWithMemory journal(run + "x" + run);
    for (const auto& kind : kMemoryKinds) {
      const fs::path png = journal.path() / (kind + ".png");
      const auto result = runCommand({"render", "--kind", kind, "--format", "png", "--output", png.string(),
                                      "--group-container", journal.path().string(), "--now", kNow});
      EXPECT_EQ(result.exitStatus, 0) << delimiter << " " << kind << ": " << result.err;
      EXPECT_GT(fs::file_size(png), 0u);
    }
  }
}

TEST(HostileNotes, AMegabyteNoteIsDrawnAndTappedQuickly) {
  for (const std::string& text : {repeated("Walked by the river, then **tea**. ", 1 << 20), std::string(1 << 20, 'x'),
                                  repeated("ab\n", 1 << 20)}) {
    const JournalWithMemory journal(text);
    const std::vector<std::string> place = {"--group-container", journal.path().string(), "--now", kNow};
    for (const auto& kind : kMemoryKinds) {
      std::vector<std::string> render = {"render", "--kind", kind, "--format", "png", "--output",
                                         (journal.path() / "x.png").string()};
      render.insert(render.end(), place.begin(), place.end());
      const auto drawn = timed(render);
      EXPECT_EQ(drawn.result.exitStatus, 0) << kind << ": " << drawn.result.err;
      EXPECT_LT(drawn.took, kGenerousBound) << kind;
    }
    std::vector<std::string> tap = {"tap", "--kind", "OTDComposeWidget", "--x", "60", "--y", "80"};
    tap.insert(tap.end(), place.begin(), place.end());
    const auto tapped = timed(tap);
    EXPECT_EQ(tapped.result.exitStatus, 0) << tapped.result.err;
    EXPECT_EQ(tapped.result.out, "widget-deeplink://OnThisDay\n");
    EXPECT_LT(tapped.took, kGenerousBound);
  }
}

class TreeFile {
 public:
  explicit TreeFile(const std::string& json) {
    auto pattern = (fs::temp_directory_path() / "quillan-tree-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    std::ofstream(folder_ / "tree.json") << json;
  }
  ~TreeFile() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  std::string path() const { return (folder_ / "tree.json").string(); }
  std::string output() const { return (folder_ / "out.png").string(); }

 private:
  fs::path folder_;
};

TEST(HostileTrees, ATreeTooDeepOrWithAnAbsurdFontIsOneLineNeverACrash) {
  std::string deep;
  // Past the views' depth limit, well within the JSON nesting any reader accepts.
  for (int i = 0; i < 100; ++i) deep += R"({"type": "VStack", "children": [)";
  deep += R"({"type": "Spacer"})";
  for (int i = 0; i < 100; ++i) deep += "]}";
  const std::string font = R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "font", "font": {"size": )";
  const std::pair<std::string, std::string> cases[] = {
      {deep, "views nest more than 64 levels deep"},
      {font + "1e9}}]}", "font size 1000000000.0 out of range"},
      {font + "-50}}]}", "font size -50 out of range"},
  };
  for (const auto& [json, problem] : cases) {
    const TreeFile tree(json);
    const auto result = runCommand({"render", "--tree", tree.path(), "--format", "png", "--output", tree.output()});
    EXPECT_NE(result.exitStatus, 0) << problem;
    EXPECT_LT(result.exitStatus, 128) << problem << ": killed by a signal";
    EXPECT_NE(result.err.find(problem), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    EXPECT_EQ(result.err.find("CRITICAL"), std::string::npos) << result.err;
  }
}

// Every JSON file a one-shot command reads, nested far past what its parser's
// readers can walk: one line naming the option, never a crash.
TEST(HostileJson, NestingPastTheLimitIsRefusedByEveryReader) {
  const testing::TemporaryFolder folder("quillan-hostile-json");
  const auto file = folder.path() / "deep.json";
  std::ofstream(file) << std::string(100'000, '[');
  const auto suite = folder.path() / "suite";
  fs::create_directories(suite);
  const std::vector<std::pair<std::vector<std::string>, std::string>> readers = {
      {{"simulate", "--from", "2026-11-22T00:00:00Z", "--to", "2026-11-23T00:00:00Z", "--events", file.string(),
        "--output", (folder.path() / "out").string(), "--group-container", folder.path().string()},
       "--events"},
      {{"snapshot", "verify", "--dir", suite.string(), "--config", file.string()}, "--config"},
      {{"snapshot", "record", "--dir", suite.string(), "--config", file.string()}, "--config"},
      {{"render", "--tree", file.string(), "--format", "png", "--output", (folder.path() / "x.png").string()},
       "--tree"},
  };
  for (const auto& [arguments, option] : readers) {
    const auto result = runCommand(arguments);
    EXPECT_EQ(result.exitStatus, 2) << arguments.front() << ": " << result.err;
    EXPECT_EQ(result.err.rfind("quillan-widgets: " + option + ": nested deeper than", 0), 0u) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
}

}  // namespace
}  // namespace quillan::cli
