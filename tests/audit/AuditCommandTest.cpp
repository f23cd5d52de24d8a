#include <gtest/gtest.h>

#include <memory>

#include <nlohmann/json.hpp>

#include "support/CommandAnswers.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::audit {
namespace {

using quillan::testing::readText;
using quillan::testing::runCommand;
using quillan::testing::TemporaryFolder;
using Words = std::vector<std::string>;

class AuditCommandTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    journal_ = std::make_unique<TemporaryFolder>("audit-journal");
    ASSERT_EQ(runCommand({"sample-journal", "--group-container", journal_->path().string()}).exitStatus, 0);
  }
  static void TearDownTestSuite() { journal_.reset(); }

  // A small matrix on the sample journal at a pinned moment, plus the options `extra`.
  static quillan::testing::CommandResult audit(const std::string& extra) {
    return runCommand(quillan::testing::words(
        "audit --group-container " + journal_->path().string() +
        " --now 2026-11-22T08:30:00+01:00 --time-zone Europe/Berlin --locales en_US,ar_EG --dynamic-types "
        "large,accessibility5 --rendering-modes fullColor " +
        extra));
  }

  static inline std::unique_ptr<TemporaryFolder> journal_;
};

// Options of `audit` (DATA for tests/data, LINKED for a folder whose
// audit.json links elsewhere) => the exit status and what was said.
TEST_F(AuditCommandTest, EachBadOptionIsOneLineAndStatusTwo) {
  const TemporaryFolder linked("audit-linked");
  const auto elsewhere = linked.path() / "elsewhere";
  std::filesystem::create_symlink(elsewhere, linked.path() / "audit.json");
  quillan::testing::expectGoldenAnswers("audit_refusals.txt", [&](const std::string& options) {
    return quillan::testing::commandAnswer("audit " + options,
                                           {{"LINKED", linked.path().string()}, {"DATA", QUILLAN_TEST_DATA_DIR}});
  });
  EXPECT_FALSE(std::filesystem::exists(elsewhere)) << "written through the link";
}

TEST_F(AuditCommandTest, ExitStatusTellsWhetherAnErrorWasFoundAndTheReportHoldsEveryCase) {
  const TemporaryFolder output("audit-output");
  const auto clean = audit("--kind ComposeButtonWidget --output " + (output / "report").string());
  ASSERT_EQ(clean.exitStatus, 0) << clean.err;
  auto report = nlohmann::json::parse(readText(output / "report/audit.json"));
  EXPECT_EQ(report["cases"], 2 * 2 * 2 * 1);
  EXPECT_TRUE(report["findings"].empty());

  // The sample's "On This Day" shows the year of its memory in grey: about 3.3:1 on either scheme.
  const auto flagged = audit("--kind OnThisDayWidget --json");
  ASSERT_EQ(flagged.exitStatus, 1) << flagged.err;
  report = nlohmann::json::parse(flagged.out);
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
  const TemporaryFolder output("audit-output");
  const auto today = output / "today";
  ASSERT_EQ(audit("--kind StreakWidget --color-schemes light --jobs 1 --output " + today.string()).exitStatus, 1);
  // The page shows each example with a crop of its picture, which is written beside it.
  const auto page = readText(today / "index.html");
  ASSERT_NE(page.find("<img src=\"crops/1.png\""), std::string::npos);
  EXPECT_EQ(readText(today / "crops/1.png").substr(1, 3), "PNG");
  EXPECT_NE(page.find("StreakWidget/en_US/large/light/fullColor"), std::string::npos);
  EXPECT_EQ(audit("--kind StreakWidget --color-schemes light --jobs 2 --json").out, readText(today / "audit.json"));

  const auto baseline = " --baseline " + (today / "audit.json").string();
  const auto accepted = audit("--kind StreakWidget --color-schemes light --json" + baseline);
  EXPECT_EQ(accepted.exitStatus, 0) << accepted.err;
  const auto report = nlohmann::json::parse(accepted.out);
  EXPECT_EQ(report["newCounts"]["error"], 0);
  EXPECT_GT(report["counts"]["error"], 0);
  for (const auto& finding : report["findings"]) EXPECT_TRUE(finding.value("baseline", false));
  // The dark scheme, which the baseline never saw, brings findings of its own.
  EXPECT_EQ(audit("--kind StreakWidget --json" + baseline).exitStatus, 1);
}

}  // namespace
}  // namespace quillan::audit
