#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/ExpectRefused.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
using Words = std::vector<std::string>;
namespace fs = std::filesystem;

// An invocation the command must refuse, as testing::expectRefused() checks it.
struct Refusal {
  Words arguments;
  std::string start;
  std::string quoted = "";
};

// Files every refusal below may name, shared by all of them.
class RefusedInput : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new testing::TemporaryFolder("quillan-refused");
    ASSERT_EQ(::mkfifo(path("tree.fifo").c_str(), 0600), 0);
    writeTree("large.json", 4 * 1024 * 1024 + 1);
    writeTree("limit.json", 4 * 1024 * 1024);
    std::ofstream(path("blob.json")) << R"({"type": "Bl\nob"})";
    std::ofstream(path("deep.json")) << std::string(100'000, '[');
    std::string views;
    // Past the views' depth limit, well within the JSON nesting any reader accepts.
    for (int i = 0; i < 100; ++i) views += R"({"type": "VStack", "children": [)";
    views += R"({"type": "Spacer"})";
    for (int i = 0; i < 100; ++i) views += "]}";
    std::ofstream(path("views.json")) << views;
    const std::string font = R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "font", "font": {"size": )";
    std::ofstream(path("huge-font.json")) << font << "1e9}}]}";
    std::ofstream(path("negative-font.json")) << font << "-50}}]}";
    std::ofstream(path("late-event.json"))
        << R"([{"at": "2026-11-24T09:00:00Z", "note": {"date": "2026-11-22T09:00:00Z", "text": "x"}}])";
    fs::create_directories(path("suite"));
  }
  static void TearDownTestSuite() { delete folder_; }

  // A valid tree padded with whitespace to `size` bytes: the size alone decides.
  static void writeTree(const std::string& name, std::size_t size) {
    const std::string tree = R"({"type": "Text", "text": "padded"})";
    std::ofstream(path(name)) << tree << std::string(size - tree.size(), ' ');
  }
  static std::string path(const std::string& name) { return (folder_->path() / name).string(); }
  static std::string folder() { return folder_->path().string(); }

  static inline testing::TemporaryFolder* folder_ = nullptr;
};

void expectRefusal(const Refusal& refusal) { testing::expectRefused(refusal.arguments, refusal.start, refusal.quoted); }

TEST_F(RefusedInput, BadValuesAreOneLineNamingTheOptionAndQuotingTheValue) {
  const auto with = [](Words arguments, const Words& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  };
  const auto timeline = [&](const Words& more) { return with({"timeline", "--kind", "StreakWidget"}, more); };
  const auto simulate = [&](const Words& more) { return with({"simulate", "--group-container", folder()}, more); };
  const auto inSpan = [&](const Words& more) {
    return simulate(with({"--from", "2026-11-22T00:00:00Z", "--to", "2026-11-23T00:00:00Z"}, more));
  };
  std::vector<Refusal> refusals = {
      {{"timeline", "--kind", "Nope"}, "--kind: ", "\"Nope\""},
      {{"timeline", "--kind", "Streak\nWidget"}, "--kind: ", R"("Streak\nWidget")"},
      {{"timeline"}, "--kind"},
      {{"render", "--kind", ""}, "--kind"},
      {{"sample-journal"}, "--group-container"},
      {{"frobnicate"}, "unknown subcommand: ", "\"frobnicate\""},
      {timeline({"--now", "2026-11-22 08:00"}), "--now: ", "2026-11-22 08:00"},
      {timeline({"--now", "2026-11-22T08:00:00"}), "--now: ", "2026-11-22T08:00:00"},
      {timeline({"--now", "2026-11-22\n08:00:00Z"}), "--now: "},
      {timeline({"--time-zone", "Mars/Olympus"}), "--time-zone: ", "Mars/Olympus"},
      {timeline({"--time-zone", "Europe/\nBerlin"}), "--time-zone: "},
      {timeline({"--locale", "xx_YY"}), "--locale: ", "xx_YY"},
      {timeline({"--locale", "de_DE@calendar=bogus"}), "--locale: unknown calendar keyword: \"calendar=bogus\""},
      {timeline({"--group-container", "/nonexistent/quillan"}), "--group-container: ", "/nonexistent/quillan"},
      {timeline({"--color-scheme", "sepia"}), "--color-scheme: ", "sepia"},
      {timeline({"--color-scheme", "dark\n"}), "--color-scheme: "},
      {timeline({"--request", "later"}), "--request: ", "later"},
      {{"render", "--kind", "StreakWidget", "--format", "gif", "--group-container", folder()}, "--format: ", "gif"},
      {{"render", "--kind", "StreakWidget", "--format", "p\x1Bng", "--group-container", folder()}, "--format: "},
      {{"render", "--kind", "StreakWidget", "--device", "393\r852", "--group-container", folder()}, "--device: "},
      {{"render", "--kind", "StreakWidget", "--dynamic-type", "huge"}, "--dynamic-type: "},
      {{"render", "--kind", "StreakWidget", "--layout-direction", "up"}, "--layout-direction: "},
      {{"tap", "--kind", "StreakWidget", "--x", "1", "--y", "1", "--layout-direction", "left"}, "--layout-direction: "},
      {{"render", "--kind", "StreakWidget", "--output", "", "--group-container", folder()}, "--output: "},
      // simulate
      {simulate({"--from", "2026-11-22", "--to", "2026-11-23T00:00:00Z"}), "--from: "},
      {simulate({"--from", "2026-11-22T00:00:00Z", "--to", "2026-11-22T00:00:00Z"}), "--to: "},
      {simulate({"--from", "2026-11-22T00:00:00Z", "--to", "2027-11-22T00:00:00Z"}), "--to: "},
      {inSpan({"--kind", "Nope"}), "--kind: "},
      {inSpan({"--kind", "StreakWidget", "--kind", "StreakWidget"}), "--kind: "},
      {inSpan({"--output", folder()}), "--output: "},
      {inSpan({"--events", path("missing.json")}), "--events: "},
      // Each bad event's message is the events reader's (tests/replay); here, that the command refuses with it.
      {inSpan({"--events", path("late-event.json")}), "--events: "},
  };
  // Numbers are finite decimals in range.
  for (const std::string value : {"", "NaN", "nan", "inf", "-inf", "Infinity", "0x10", "1e2", "2,5", " 2", "2 ", "+",
                                  "-", ".", "1.2.3", "\xEF\xBC\x92"}) {
    refusals.push_back({{"render", "--kind", "StreakWidget", "--format", "png", "--scale", value}, "--scale: "});
    refusals.push_back({{"tap", "--kind", "StreakWidget", "--x", value, "--y", "1"}, "--x: "});
    refusals.push_back({{"tap", "--kind", "StreakWidget", "--x", "1", "--y", value}, "--y: "});
    refusals.push_back({timeline({"--seed", value}), "--seed: "});
    // A version as phones report it has up to three parts.
    if (value != "1.2.3") refusals.push_back({timeline({"--platform-version", value}), "--platform-version: "});
  }
  const std::string huge(400, '9');
  for (const auto& value : Words{"0.99", "3.01", "-2", huge}) {
    refusals.push_back({{"render", "--kind", "StreakWidget", "--format", "png", "--scale", value}, "--scale: "});
  }
  refusals.push_back({{"tap", "--kind", "StreakWidget", "--x", huge, "--y", "1"}, "--x: "});
  for (const std::string value : {"-1", "1.5", "18446744073709551616", "0b1"}) {
    refusals.push_back({timeline({"--seed", value}), "--seed: "});
  }
  for (const std::string version : {"17.0.1.2", "17..1", "17.0.", "17.0.x", "17.0.-1", "17.0.99999", ".17.0"}) {
    refusals.push_back({timeline({"--platform-version", version}), "--platform-version: "});
  }
  // An --output in a folder that does not exist, or that is a folder, in every format.
  for (const std::string format : {"json", "png", "svg", "pdf"}) {
    for (const auto& output : {path("no/such/streak." + format), folder()}) {
      refusals.push_back({{"render", "--kind", "StreakWidget", "--format", format, "--output", output,
                           "--group-container", folder()},
                          "--output: "});
    }
  }
  for (const auto& refusal : refusals) expectRefusal(refusal);
  EXPECT_FALSE(fs::exists(path("no")));
  // A long value is cut, the line kept readable.
  EXPECT_LT(runCommand({"timeline", "--kind", std::string(100000, 'k')}).err.size(), 400u);
}

// None of these may block, be read whole, or crash a reader.
TEST_F(RefusedInput, FilesAreRefusedBeforeTheyAreReadOrDrawn) {
  std::vector<Refusal> refusals;
  // Tree files are regular files of at most four mebibytes.
  for (const auto& file : Words{"/dev/zero", path("tree.fifo"), folder(), path("large.json"), path("missing.json"),
                                path("two\nlines.json"), path("blob.json")}) {
    refusals.push_back({{"render", "--tree", file}, "--tree: "});
    refusals.push_back({{"render", "--tree", file, "--format", "png"}, "--tree: "});
  }
  const std::string png = path("x.png");
  // A tree too deep or with an absurd font is one line, never a crash.
  refusals.push_back({{"render", "--tree", path("views.json"), "--format", "png", "--output", png},
                      "--tree: ",
                      "views nest more than 64 levels deep"});
  refusals.push_back({{"render", "--tree", path("huge-font.json"), "--format", "png", "--output", png},
                      "--tree: ",
                      "font size 1000000000.0 out of range"});
  refusals.push_back({{"render", "--tree", path("negative-font.json"), "--format", "png", "--output", png},
                      "--tree: ",
                      "font size -50 out of range"});
  // Every JSON file a one-shot command reads, nested far past what its parser's readers can walk.
  const std::string deep = path("deep.json");
  refusals.push_back({{"simulate", "--from", "2026-11-22T00:00:00Z", "--to", "2026-11-23T00:00:00Z", "--events", deep,
                       "--output", path("out"), "--group-container", folder()},
                      "--events: nested deeper than"});
  refusals.push_back({{"snapshot", "verify", "--dir", path("suite"), "--config", deep},
                      "--config: nested deeper than"});
  refusals.push_back({{"snapshot", "record", "--dir", path("suite"), "--config", deep},
                      "--config: nested deeper than"});
  refusals.push_back({{"render", "--tree", deep, "--format", "png", "--output", png}, "--tree: nested deeper than"});
  for (const auto& refusal : refusals) expectRefusal(refusal);

  const auto atLimit = runCommand({"render", "--tree", path("limit.json")});
  EXPECT_EQ(atLimit.exitStatus, 0) << atLimit.err;
  EXPECT_NE(atLimit.out.find("padded"), std::string::npos);
}

TEST_F(RefusedInput, ValuesWrittenAnyValidWayAreTaken) {
  std::vector<Words> accepted;
  // Within range, written any decimal way, a number is taken as decimal.
  for (const std::string x : {"-5", ".5", "5.", "+0", "007"}) {
    accepted.push_back({"tap", "--kind", "ComposeButtonWidget", "--x", x, "--y", "1", "--group-container", folder()});
  }
  for (const std::string version : {"17.0.1", "18", "17.0", "16.4.1", "18.1.0"}) {
    accepted.push_back({"timeline", "--kind", "StreakWidget", "--platform-version", version});
  }
  for (const std::string locale :
       {"ja_JP@calendar=japanese", "th_TH@calendar=buddhist", "de_DE@calendar=gregorian", "de_DE"}) {
    accepted.push_back({"timeline", "--kind", "StreakWidget", "--locale", locale});
  }
  for (const auto& arguments : accepted) {
    const auto result = runCommand(arguments);
    EXPECT_EQ(result.exitStatus, 0) << arguments[3] << " " << arguments[4] << ": " << result.err;
  }
}

}  // namespace
}  // namespace quillan::cli
