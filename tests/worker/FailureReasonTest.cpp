#include "worker/FailureReason.hpp"

#include <gtest/gtest.h>

#include <csignal>

namespace quillan::worker {
namespace {

using namespace std::chrono_literals;

const FailureLimits kLimits{5000ms, 30 * 1024 * 1024};

int exited(int status) { return status << 8; }
int signalled(int signal) { return signal; }

ChildEnd ended(int waitStatus, std::string stderrText = "", bool answered = false) {
  ChildEnd end;
  end.waitStatus = waitStatus;
  end.stderrText = std::move(stderrText);
  end.answered = answered;
  end.peakKilobytes = 8 * 1024;
  return end;
}

TEST(FailureReason, AnAnswerAfterACleanExitIsNoFailure) {
  EXPECT_EQ(failureReason(ended(exited(0), "a warning on stderr\n", true), kLimits), std::nullopt);
}

TEST(FailureReason, TheFatalReportIsTheLastFatalLineWhateverCameBefore) {
  const auto end = ended(signalled(SIGABRT), "noise\nA/B: Fatal error: first\r\nC/D: Fatal error: second\n\n");
  EXPECT_EQ(failureReason(end, kLimits), "C/D: Fatal error: second");
}

TEST(FailureReason, AnAbortWithNothingSaidIsTheSilentStop) {
  EXPECT_EQ(failureReason(ended(signalled(SIGABRT), " \n\t\n"), kLimits), "stopped without a message");
  EXPECT_EQ(failureReason(ended(exited(0)), kLimits), "stopped without a message") << "exit(0) without an answer";
}

TEST(FailureReason, SignalsAndExitStatusesCarryTheLastLineOfStandardError) {
  EXPECT_EQ(failureReason(ended(signalled(SIGSEGV)), kLimits), "killed by signal 11");
  EXPECT_EQ(failureReason(ended(signalled(SIGABRT), "x.cpp:3: f: Assertion `y' failed.\n"), kLimits),
            "killed by signal 6: x.cpp:3: f: Assertion `y' failed.");
  EXPECT_EQ(failureReason(ended(exited(1), "first\nlast\n", true), kLimits), "exited with status 1: last")
      << "an answer followed by a failing exit is no answer";
}

TEST(FailureReason, TheLimitsComeBeforeWhatTheKilledChildSaid) {
  auto deadline = ended(signalled(SIGKILL), "A: Fatal error: too late\n");
  deadline.killedFor = ChildKill::deadline;
  EXPECT_EQ(failureReason(deadline, {250ms, kLimits.memoryCeilingBytes}), "exceeded the deadline of 0.25 s");

  auto memory = ended(signalled(SIGKILL));
  memory.killedFor = ChildKill::memory;
  memory.peakKilobytes = 30 * 1024 + 1;
  EXPECT_EQ(failureReason(memory, kLimits), "exceeded the memory ceiling of 30 MB (peak 30.1 MB)");
}

TEST(FailureReason, APeakOverTheCeilingFailsEvenAFinishedChild) {
  auto end = ended(exited(0), "", true);
  end.peakKilobytes = 41 * 1024;
  EXPECT_EQ(failureReason(end, kLimits), "exceeded the memory ceiling of 30 MB (peak 41 MB)");
  end.peakKilobytes = 30 * 1024;
  EXPECT_EQ(failureReason(end, kLimits), std::nullopt) << "the ceiling itself is allowed";
}

TEST(FailureReason, AnUncaughtErrorIsAFailureWithItsMessage) {
  auto end = ended(exited(0), "", true);
  end.exception = "boom";
  EXPECT_EQ(failureReason(end, kLimits), "stopped by an uncaught error: boom");
}

TEST(FailureReason, NumbersAreWrittenWithoutTrailingZeros) {
  EXPECT_EQ(secondsText(5000ms), "5");
  EXPECT_EQ(secondsText(1500ms), "1.5");
  EXPECT_EQ(secondsText(1ms), "0.001");
  EXPECT_EQ(megabytesText(30 * 1024 * 1024), "30");
  EXPECT_EQ(megabytesText(512 * 1024), "0.5");
  EXPECT_EQ(megabytesText(30 * 1024 * 1024 + 1), "30.1") << "rounded up, never down to the ceiling";
}

}  // namespace
}  // namespace quillan::worker
