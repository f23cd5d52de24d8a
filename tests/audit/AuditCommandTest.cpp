#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/FileContents.hpp"
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

TEST_F(AuditCommandTest, EachBadOptionIsOneLineAndStatusTwo) {
  const struct {
    Words words;
    const char* message;
  } refusals[] = {
      {{"--locales", "en_US,xx_YY"}, "--locales: unknown locale: \"xx_YY\""},
      {{"--locales", "en_US,,de_DE"}, "--locales: empty name in the list"},
      {{"--dynamic-types", "huge"}, "--dynamic-types: unknown text size: \"huge\""},
      {{"--color-schemes", "sepia"}, "--color-schemes: unknown color scheme: \"sepia\""},
      {{"--rendering-modes", "tinted"}, "--rendering-modes: unknown rendering mode: \"tinted\""},
      {{"--kind", "Nope"}, "--kind: unknown widget kind: \"Nope\""},
      {{"--fail-on", "fatal"}, "--fail-on: unknown severity: \"fatal\""},
  };
  for (const auto& refusal : refusals) {
    Words words = {"audit"};
    words.insert(words.end(), refusal.words.begin(), refusal.words.end());
    const auto result = quillan::testing::runCommand(words);
    SCOPED_TRACE(refusal.message);
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_NE(result.err.find(refusal.message), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
}

TEST_F(AuditCommandTest, ExitStatusFollowsFailOnAndTheReportHoldsEveryCase) {
  const quillan::testing::TemporaryFolder output("audit-output");
  const auto folder = (output / "report").string();
  // The sample's "On This Day" date header is offset into its title's frame: an info finding, no error.
  const auto passing = quillan::testing::runCommand(auditOf({"--kind", "OnThisDayWidget", "--output", folder}));
  ASSERT_EQ(passing.exitStatus, 0) << passing.err;
  const auto report = nlohmann::json::parse(quillan::testing::readText(output / "report/audit.json"));
  EXPECT_EQ(report["cases"], 2 * 2 * 2 * 1);
  ASSERT_FALSE(report["findings"].empty());
  const auto& finding = report["findings"][0];
  for (const char* key : {"check", "severity", "case", "element", "measured", "limit", "unit", "detail", "frame"})
    EXPECT_TRUE(finding.contains(key)) << key;
  EXPECT_EQ(report["counts"]["info"], report["findings"].size());

  const auto failing =
      quillan::testing::runCommand(auditOf({"--kind", "OnThisDayWidget", "--json", "--fail-on", "info"}));
  EXPECT_EQ(failing.exitStatus, 1) << failing.err;
  EXPECT_EQ(nlohmann::json::parse(failing.out)["findings"], report["findings"]);
}

}  // namespace
}  // namespace quillan::audit
