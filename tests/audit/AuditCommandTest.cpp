#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/RunCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::audit {
namespace {

using Words = std::vector<std::string>;

class AuditCommandTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    journal_ = new quillan::testing::TemporaryFolder("audit-journal");
    ASSERT_EQ(
        quillan::testing::runCommand({"sample-journal", "--group-container", journal_->path().string()}).exitStatus, 0);
  }
  static void TearDownTestSuite() { delete journal_; }

  // A small matrix on the sample journal at a pinned moment, plus `extra`.
  static Words auditOf(const Words& extra) {
    Words words = {"audit",
                   "--group-container",
                   journal_->path().string(),
                   "--now",
                   "2026-11-22T08:30:00+01:00",
                   "--time-zone",
                   "Europe/Berlin",
                   "--locales",
                   "en_US,ar_EG",
                   "--dynamic-types",
                   "large,accessibility5",
                   "--rendering-modes",
                   "fullColor"};
    words.insert(words.end(), extra.begin(), extra.end());
    return words;
  }

  static quillan::testing::TemporaryFolder* journal_;
};

quillan::testing::TemporaryFolder* AuditCommandTest::journal_ = nullptr;

// `text` with each `from` written as `to`.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// Options of `audit` (DATA for tests/data, LINKED for a folder whose
// audit.json links elsewhere) => the exit status and what was said.
TEST_F(AuditCommandTest, EachBadOptionIsOneLineAndStatusTwo) {
  const quillan::testing::TemporaryFolder linked("audit-linked");
  const auto elsewhere = linked.path() / "elsewhere";
  std::filesystem::create_symlink(elsewhere, linked.path() / "audit.json");
  quillan::testing::expectGoldenAnswers("audit_refusals.txt", [&](const std::string& options) {
    Words words = {"audit"};
    for (const auto& word : quillan::testing::words(options)) {
      words.push_back(replaced(replaced(word, "LINKED", linked.path().string()), "DATA", QUILLAN_TEST_DATA_DIR));
    }
    auto result = quillan::testing::runCommand(words);
    if (result.err.ends_with('\n')) result.err.pop_back();
    const auto said = replaced(replaced(result.err, linked.path().string(), "LINKED"), QUILLAN_TEST_DATA_DIR, "DATA");
    return "exit " + std::to_string(result.exitStatus) + (result.out.empty() ? ": " : " with output: ") + said;
  });
  EXPECT_FALSE(std::filesystem::exists(elsewhere)) << "written through the link";
}

TEST_F(AuditCommandTest, ExitStatusTellsWhetherAnErrorWasFoundAndTheReportHoldsEveryCase) {
  const quillan::testing::TemporaryFolder output("audit-output");
  const auto folder = (output / "report").string();
  const auto clean = quillan::testing::runCommand(auditOf({"--kind", "ComposeButtonWidget", "--output", folder}));
  ASSERT_EQ(clean.exitStatus, 0) << clean.err;
  auto report = nlohmann::json::parse(quillan::testing::readText(output / "report/audit.json"));
  EXPECT_EQ(report["cases"], 2 * 2 * 2 * 1);
  EXPECT_TRUE(report["findings"].empty());

  // The sample's "On This Day" shows the year of its memory in grey: about 3.3:1 on either scheme.
  const auto flagged = quillan::testing::runCommand(auditOf({"--kind", "OnThisDayWidget", "--json"}));
  ASSERT_EQ(flagged.exitStatus, 1) << flagged.err;
  report = nlohmann::json::parse(flagged.out);
  ASSERT_FALSE(report["findings"].empty());
  std::size_t errors = 0;
  for (const auto& finding : report["findings"]) {
    for (const char* key : {"check", "severity", "case", "element", "measured", "limit", "unit", "detail", "frame"})
      EXPECT_TRUE(finding.contains(key)) << key;
    errors += finding["severity"] == "error" ? 1 : 0;
  }
  EXPECT_EQ(report["counts"]["error"], errors);
  EXPECT_GT(errors, 0u);
}

TEST_F(AuditCommandTest, WorkersChangeNothingAndABaselineAcceptsTodaysFindings) {
  const quillan::testing::TemporaryFolder output("audit-output");
  const auto today = (output / "today").string();
  ASSERT_EQ(quillan::testing::runCommand(auditOf({"--kind", "StreakWidget", "--color-schemes", "light", "--jobs", "1",
                                                  "--output", today}))
                .exitStatus,
            1);
  // The page shows each example with a crop of its picture, which is written beside it.
  const auto page = quillan::testing::readText(output / "today/index.html");
  ASSERT_NE(page.find("<img src=\"crops/1.png\""), std::string::npos);
  EXPECT_EQ(quillan::testing::readText(output / "today/crops/1.png").substr(1, 3), "PNG");
  EXPECT_NE(page.find("StreakWidget/en_US/large/light/fullColor"), std::string::npos);
  const auto inTwo = quillan::testing::runCommand(auditOf({"--kind", "StreakWidget", "--color-schemes", "light",
                                                           "--jobs", "2", "--json"}));
  EXPECT_EQ(inTwo.out, quillan::testing::readText(output / "today/audit.json"));

  const auto baseline = (output / "today/audit.json").string();
  const auto accepted = quillan::testing::runCommand(auditOf({"--kind", "StreakWidget", "--color-schemes", "light",
                                                              "--baseline", baseline, "--json"}));
  EXPECT_EQ(accepted.exitStatus, 0) << accepted.err;
  const auto report = nlohmann::json::parse(accepted.out);
  EXPECT_EQ(report["newCounts"]["error"], 0);
  EXPECT_GT(report["counts"]["error"], 0);
  for (const auto& finding : report["findings"]) EXPECT_TRUE(finding.value("baseline", false));

  // The dark scheme, which the baseline never saw, brings findings of its own.
  const auto wider =
      quillan::testing::runCommand(auditOf({"--kind", "StreakWidget", "--baseline", baseline, "--json"}));
  EXPECT_EQ(wider.exitStatus, 1) << wider.err;
}

}  // namespace
}  // namespace quillan::audit
