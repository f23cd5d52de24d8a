#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "support/CommandAnswers.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::contentsOf;
using testing::readText;
using testing::runCommand;
using testing::TemporaryFolder;
using Json = nlohmann::json;
namespace fs = std::filesystem;

// A sample journal for `now` in `zone`, and a scratch folder for the results.
class Simulate : public ::testing::Test {
 protected:
  void writeJournal(const std::string& now, const std::string& zone) {
    const auto result = runCommand({"sample-journal", "--group-container", container().string(), "--now", now,
                                    "--time-zone", zone});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
  }

  // Runs simulate in `zone` into output(); the log, or null when it failed.
  Json simulate(const std::string& zone, std::vector<std::string> arguments) {
    std::vector<std::string> command = {
        "simulate", "--group-container", container().string(), "--time-zone", zone, "--locale", "en_US", "--seed",
        "7",        "--output",          output().string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const auto result = runCommand(command, {"TMPDIR=" + scratch().string()});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    if (result.exitStatus != 0) return nullptr;
    EXPECT_EQ(result.out, fs::absolute(output()).string() + "\n");
    return Json::parse(readText(output() / "log.json"));
  }

  fs::path folderPath() const { return folder_.path(); }
  fs::path container() const { return folder_.path() / "group"; }
  fs::path output() const { return folder_.path() / "out"; }
  fs::path scratch() const { return folder_.path() / "tmp"; }

  void SetUp() override { fs::create_directories(scratch()); }

 private:
  TemporaryFolder folder_;
};

std::vector<Json> eventsOf(const Json& log, const std::string& kind, const std::string& type) {
  std::vector<Json> events;
  for (const auto& event : log["events"]) {
    if (event["kind"] == kind && event["type"] == type) events.push_back(event);
  }
  return events;
}

// The clocks go from 23:59:59 to 01:00 on 8 March in Havana: that day starts at
// 01:00. The log holds each widget's placing, then for each day one timeline
// asked at its start, its entry drawn and the reload its policy asks for.
TEST_F(Simulate, AWeekInHavanaAsksEveryWidgetOncePerDayAtItsStartEvenWithoutAMidnight) {
  writeJournal("2026-03-05T09:00:00-05:00", "America/Havana");
  const auto log = simulate("America/Havana",
                            {"--from", "2026-03-05T00:00:00-05:00", "--to", "2026-03-11T23:59:59-04:00"});
  ASSERT_FALSE(log.is_null());
  testing::expectGoldenJson(log, "simulate_havana_week.json");
}

TEST_F(Simulate, ANoteAt0914TurnsTheComposeButtonGreyOnTheFilmstripAndLeavesTheJournalUntouched) {
  writeJournal("2026-11-22T08:00:00+01:00", "Europe/Berlin");
  const auto before = contentsOf(container());
  const auto events = folderPath() / "events.json";
  std::ofstream(events) << R"([{"at": "2026-11-22T09:14:00+01:00",
                                "note": {"date": "2026-11-22T09:14:00+01:00", "text": "Walked to the lake <b>&</b>"}}])";
  const auto log = simulate("Europe/Berlin", {"--kind", "ComposeButtonWidget", "--kind", "StreakWidget", "--from",
                                              "2026-11-22T00:00:00+01:00", "--to", "2026-11-22T12:00:00+01:00",
                                              "--events", events.string()});
  ASSERT_FALSE(log.is_null());
  // An entry of each widget at 09:14, after the app's reload that asks every widget again.
  testing::expectGoldenJson(log, "simulate_note_at_0914.json");
  // The compose button turns grey, and today's streak circle gets its tick, in pictures and trees alike.
  const auto entries = eventsOf(log, "ComposeButtonWidget", "entry");
  ASSERT_EQ(entries.size(), 2u);
  for (const auto& shown : {entries, eventsOf(log, "StreakWidget", "entry")}) {
    for (const auto* file : {"light", "dark", "view"}) {
      EXPECT_NE(readText(output() / shown[0][file].get<std::string>()),
                readText(output() / shown[1][file].get<std::string>()))
          << file;
    }
  }
  // The filmstrip shows every entry's pictures and tree, with its deep links.
  const auto page = readText(output() / "index.html");
  for (const auto& entry : entries) {
    for (const auto* file : {"light", "dark", "view"}) {
      EXPECT_TRUE(fs::is_regular_file(output() / entry[file].get<std::string>())) << entry;
      EXPECT_NE(page.find("\"" + entry[file].get<std::string>() + "\""), std::string::npos) << file;
    }
  }
  EXPECT_NE(page.find("2026-11-22 09:14:00+01:00"), std::string::npos);
  EXPECT_NE(page.find("href=\"widget-deeplink://"), std::string::npos);
  // Compared without printing a journal's bytes on failure.
  EXPECT_TRUE(contentsOf(container()) == before) << "the journal's folder changed";
  EXPECT_TRUE(fs::is_empty(scratch())) << "the private copy is left behind";
}

TEST_F(Simulate, AViewTheExtensionStopsOnIsAFailedEventAndTheReplayGoesOn) {
  fs::create_directories(container());
  std::ofstream(container() / "Quillan.sqlite") << "not a database, but text long enough to be taken for one";
  const auto log = simulate("UTC", {"--kind", "StreakWidget", "--from", "2026-11-22T00:00:00Z", "--to",
                                    "2026-11-23T01:00:00Z"});
  ASSERT_FALSE(log.is_null());
  // An entry at each midnight, drawn by no picture, and the view's failure beside it.
  testing::expectGoldenJson(Json::parse(testing::replacedAll(log.dump(), container().string(), "GROUP")),
                            "simulate_failed_view.json");
}

}  // namespace
}  // namespace quillan::cli
