#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <tuple>

#include <nlohmann/json.hpp>

#include "support/CommandAnswers.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
using Json = nlohmann::json;
namespace fs = std::filesystem;

using testing::TemporaryFolder;

// A group container holding a sample journal written for `now` in Berlin.
class SampleJournalCommand : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TemporaryFolder();
    const auto result = runCommand({"sample-journal", "--group-container", container().string(), "--now", kNow,
                                    "--time-zone", "Europe/Berlin"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
  }
  static void TearDownTestSuite() { delete folder_; }
  static fs::path container() { return folder_->path() / "group"; }
  static std::vector<std::string> environment(std::vector<std::string> arguments, std::string locale = "en_US") {
    arguments.insert(arguments.end(), {"--group-container", container().string(), "--now", kNow, "--time-zone",
                                       "Europe/Berlin", "--locale", locale, "--seed", "5"});
    return arguments;
  }
  static constexpr const char* kNow = "2026-11-22T09:00:00+01:00";
  static inline TemporaryFolder* folder_ = nullptr;
};

TEST_F(SampleJournalCommand, ASeedWithLeadingZerosIsDecimal) {
  const auto prompt = [](const std::string& seed) {
    return runCommand({"render", "--kind", "ComposeButtonWidget", "--group-container", container().string(), "--now",
                       kNow, "--seed", seed})
        .out;
  };
  EXPECT_EQ(prompt("011"), prompt("11"));
  EXPECT_NE(prompt("11"), prompt("9"));  // 011 read as octal would be 9
}

TEST(Command, HelpWarnsThatTheFirstReadMovesALegacyJournal) {
  const auto result = runCommand({"--help"});
  const auto appSupport = result.out.find("--app-support");
  ASSERT_NE(appSupport, std::string::npos) << result.out;
  const auto warning = result.out.find("deletes the old file", appSupport);
  EXPECT_LT(warning, result.out.find("--now", appSupport)) << result.out;
}

TEST_F(SampleJournalCommand, ATreeWrittenAsJsonDrawsAgainFromTheFile) {
  TemporaryFolder folder;
  const auto tree = folder.path() / "medium.json";
  ASSERT_EQ(runCommand(environment({"render", "--kind", "OTDComposeWidget", "--output", tree.string()})).exitStatus, 0);
  const auto again = runCommand({"render", "--tree", tree.string()});
  ASSERT_EQ(again.exitStatus, 0) << again.err;
  EXPECT_EQ(Json::parse(testing::readText(tree)), (Json{{"kind", "OTDComposeWidget"},
                                                        {"family", "systemMedium"},
                                                        {"date", "2026-11-22T00:00:00+01:00"},
                                                        {"view", Json::parse(again.out)}}));
  const auto png = folder.path() / "medium.png";
  const auto drawn = runCommand({"render", "--tree", tree.string(), "--format", "png", "--output", png.string()});
  EXPECT_EQ(drawn.exitStatus, 0) << drawn.err;
  EXPECT_GT(fs::file_size(png), 1000u);
}

// "WORDS => exit N: what it printed": DIR is a group container holding the sample journal.
TEST_F(SampleJournalCommand, PrintsTheExactAnswers) {
  testing::expectGoldenAnswers("command_outputs.txt", [](const std::string& question) {
    return testing::commandAnswer(question, {{"DIR", container().string()}}, /*printed=*/true);
  });
}

// How mirroring and text styles work is the layout's (tests/render) and the audit's; here, that the
// locale and the options reach the layout: its direction, and the streak's symbols, sized by a text style.
TEST_F(SampleJournalCommand, TheLocaleTheDirectionAndTheTextSizeReachTheLayout) {
  const auto layout = [](const std::string& locale, const std::string& options) {
    const auto result = runCommand(environment(testing::words("render --kind StreakWidget --format layout " + options),
                                               locale));
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    return Json::parse(result.out, nullptr, false);
  };
  for (const auto& [locale, options, direction] : {std::tuple{"en_US", "", "ltr"},
                                                   {"ar_EG", "", "rtl"},
                                                   {"ar_EG", "--layout-direction ltr", "ltr"},
                                                   {"en_US", "--layout-direction rtl", "rtl"}}) {
    EXPECT_EQ(layout(locale, options)["layoutDirection"], direction) << locale << " " << options;
  }
  const auto largestSymbol = [&](const std::string& size) {
    const auto boxes = layout("en_US", "--dynamic-type " + size)["content"].flatten();
    double largest = 0;
    for (const auto& [key, value] : boxes.items()) {
      const auto box = key.substr(0, key.size() - 5);  // the box whose "/type" this is
      if (key.ends_with("/type") && value == "Image") largest = std::max(largest, boxes.value(box + "/frame/3", 0.0));
    }
    return largest;
  };
  const double xSmall = largestSymbol("xSmall"), large = largestSymbol("large");
  EXPECT_GT(xSmall, 0);
  EXPECT_LT(xSmall, large);
  EXPECT_LT(large, largestSymbol("accessibility5"));
}

TEST_F(SampleJournalCommand, GalleryImageMapsAreTheHitTestRegions) {
  TemporaryFolder output;
  const auto result = runCommand(environment({"demo", "--output", output.path().string()}));
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  const auto html = testing::readText(output.path() / "index.html");
  // Each image's map: the kind from the file name, then its areas.
  const std::regex image(R"(<img src="([A-Za-z]+)-(light|dark|vibrant)\.png"[^>]*>\s*<map name="[^"]+">([^]*?)</map>)");
  const std::regex area(R"rx(coords="([\d.]+),([\d.]+),([\d.]+),([\d.]+)" href="([^"]+)")rx");
  int images = 0, areas = 0;
  for (std::sregex_iterator it(html.begin(), html.end(), image), end; it != end; ++it) {
    ++images;
    const auto kind = (*it)[1].str();
    EXPECT_TRUE(fs::exists(output.path() / (kind + "-" + (*it)[2].str() + ".png")));
    const auto map = (*it)[3].str();
    for (std::sregex_iterator a(map.begin(), map.end(), area); a != end; ++a) {
      ++areas;
      const double x = (std::stod((*a)[1]) + std::stod((*a)[3])) / 2;
      const double y = (std::stod((*a)[2]) + std::stod((*a)[4])) / 2;
      const auto scheme = (*it)[2].str() == "light" ? "light" : "dark";
      const auto tapped = runCommand(environment({"tap", "--kind", kind, "--x", std::to_string(x), "--y",
                                                  std::to_string(y), "--color-scheme", scheme}));
      EXPECT_EQ(tapped.out, (*a)[5].str() + "\n") << kind << " at " << x << "," << y;
    }
  }
  EXPECT_EQ(images, 11);
  EXPECT_GE(areas, 11 + 2 * 5);  // the streak row's five circles, light and dark
}

}  // namespace
}  // namespace quillan::cli
