#include <gtest/gtest.h>

#include <filesystem>
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

std::string repeated(std::string_view unit, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += unit;
  return text;
}

// Deeply nested Markdown and megabyte notes leave the memory widgets drawing
// and their taps answering.
TEST(HostileNotes, AreDrawnAndTapped) {
  const std::string stars(100'000, '*'), underscores(100'000, '_');
  for (const std::string& text :
       {stars + "x" + stars, underscores + "x" + underscores, repeated("Walked by the river, then **tea**. ", 1 << 20),
        std::string(1 << 20, 'x'), repeated("ab\n", 1 << 20)}) {
    const JournalWithMemory journal(text);
    const std::vector<std::string> place = {"--group-container", journal.path().string(), "--now", kNow};
    const auto run = [&place](std::vector<std::string> arguments) {
      arguments.insert(arguments.end(), place.begin(), place.end());
      return runCommand(arguments);
    };
    for (const std::string kind : {"OnThisDayWidget", "OTDComposeWidget"}) {
      const fs::path png = journal.path() / (kind + ".png");
      const auto drawn = run({"render", "--kind", kind, "--format", "png", "--output", png.string()});
      EXPECT_EQ(drawn.exitStatus, 0) << text.substr(0, 20) << " " << kind << ": " << drawn.err;
      EXPECT_GT(fs::file_size(png), 0u);
    }
    const auto tapped = run({"tap", "--kind", "OTDComposeWidget", "--x", "60", "--y", "80"});
    EXPECT_EQ(tapped.exitStatus, 0) << tapped.err;
    EXPECT_EQ(tapped.out, "widget-deeplink://OnThisDay\n");
  }
}

}  // namespace
}  // namespace quillan::cli
