#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <memory>

#include "WorkerFixture.hpp"
#include "fixtures/JournalWriter.hpp"
#include "worker/KeeperImage.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::worker {
namespace {

using testing::at;
using testing::JournalFolders;

constexpr std::int64_t kMebibyte = 1024 * 1024;
// What the host grows by before its workers are killed: far more than an
// evaluation's peak, so a worker forked from the host could not hide it.
constexpr std::size_t kHostGrowth = 96 * kMebibyte;
// An evaluation's peak varies by a few pages from run to run.
constexpr std::int64_t kPeakSlackKilobytes = 8 * 1024;

class KeeperImageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fixtures::JournalWriter writer(folders_.makeContainer("journal") / "Quillan.sqlite");
    writer.addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
  }

  WorkerOptions imageOptions() const {
    auto options = testing::answeringOptions();
    options.keeperImage = QUILLAN_CLI_PATH;
    options.keeperDefaults = folders_.settings("journal");
    return options;
  }
  Evaluation<widgets::TimelineAnswer> ask(WidgetWorker& worker) const {
    return worker.timeline({"OnThisDayWidget", at("2026-11-22T09:00:00+01:00"), widgets::TimelineRequest::timeline,
                            folders_.settings("journal")});
  }

  JournalFolders folders_;
};

// The live host's case: it has grown, then every worker process is killed.
// The keeper is reaped at once, and what replaces the processes is as small
// as what they replaced.
TEST_F(KeeperImageTest, ReplacementsAfterTheHostGrewStartAsSmallAsTheFirst) {
  const struct {
    const char* name;
    bool killKeeper;
  } cases[] = {{"the warm worker killed", false}, {"the keeper and the warm worker killed", true}};
  WidgetWorker worker(imageOptions());
  const auto first = ask(worker);
  ASSERT_TRUE(first.value()) << first.failure()->reason;
  const auto grown = testing::residentBlock(kHostGrowth);

  for (const auto& killed : cases) {
    SCOPED_TRACE(killed.name);
    const pid_t warm = worker.warmWorkerPid();
    const pid_t keeper = worker.keeperPid();
    if (killed.killKeeper) kill(keeper, SIGKILL);
    kill(warm, SIGKILL);
    // Both must be gone before the next ask: one sent to a warm worker still
    // dying fails as a stop during the evaluation, which is right but not
    // this case.
    EXPECT_TRUE(testing::waitUntilGone(warm)) << "left a zombie";
    if (killed.killKeeper) {
      EXPECT_TRUE(testing::waitUntilGone(keeper)) << "left a zombie";
    }

    const auto again = ask(worker);
    ASSERT_TRUE(again.value()) << again.failure()->reason;
    EXPECT_NE(worker.warmWorkerPid(), warm);
    EXPECT_EQ(worker.keeperPid() != keeper, killed.killKeeper);
    EXPECT_LT(again.cost.peakKilobytes, first.cost.peakKilobytes + kPeakSlackKilobytes);
  }
}

// Whichever way it was started, a keeper that ends while the host is idle
// leaves no zombie behind, and one is started again when next needed.
TEST_F(KeeperImageTest, AKilledKeeperIsReapedWithoutWaitingForTheNextEvaluation) {
  const std::function<WorkerOptions()> ways[] = {[this] { return imageOptions(); },
                                                 [] { return testing::answeringOptions(); }};
  for (const auto& options : ways) {
    WidgetWorker worker(options());
    const pid_t keeper = worker.keeperPid();
    ASSERT_GT(keeper, 0);
    kill(keeper, SIGKILL);
    EXPECT_TRUE(testing::waitUntilGone(keeper));
    const auto answer = ask(worker);
    EXPECT_TRUE(answer.value()) << answer.failure()->reason;
  }
}

}  // namespace
}  // namespace quillan::worker
