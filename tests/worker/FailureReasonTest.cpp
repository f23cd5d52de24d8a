#include <gtest/gtest.h>

#include <csignal>

#include "worker/FailureReason.hpp"

namespace quillan::worker {
namespace {

using namespace std::chrono_literals;

const FailureLimits kLimits{5000ms, 30 * 1024 * 1024};

int exited(int status) { return status << 8; }
int signalled(int signal) { return signal; }

struct Ending {
  const char* name;
  ChildEnd end;
  std::optional<std::string> reason;  // empty: no failure
  FailureLimits limits = kLimits;
};

ChildEnd ended(int waitStatus, std::string stderrText = "", bool answered = false,
               std::int64_t peakKilobytes = 8 * 1024) {
  ChildEnd end;
  end.waitStatus = waitStatus;
  end.peakKilobytes = peakKilobytes;
  end.stderrText = std::move(stderrText);
  end.answered = answered;
  return end;
}

ChildEnd killedFor(ChildKill kill, std::string stderrText, std::int64_t peakKilobytes) {
  auto end = ended(signalled(SIGKILL), std::move(stderrText), false, peakKilobytes);
  end.killedFor = kill;
  return end;
}

ChildEnd threw(std::string message) {
  auto end = ended(exited(0), "", true);
  end.exception = std::move(message);
  return end;
}

TEST(FailureReason, EachWayAChildEndsHasItsReason) {
  const Ending endings[] = {
      {"an answer after a clean exit", ended(exited(0), "a warning on stderr\n", true), std::nullopt},
      {"the last fatal line, whatever came before",
       ended(signalled(SIGABRT), "noise\nA/B: Fatal error: first\r\nC/D: Fatal error: second\n\n"),
       "C/D: Fatal error: second"},
      {"an abort with nothing said", ended(signalled(SIGABRT), " \n\t\n"), "stopped without a message"},
      {"exit(0) without an answer", ended(exited(0)), "stopped without a message"},
      {"a signal", ended(signalled(SIGSEGV)), "killed by signal 11"},
      {"a signal after a line", ended(signalled(SIGABRT), "x.cpp:3: f: Assertion `y' failed.\n"),
       "killed by signal 6: x.cpp:3: f: Assertion `y' failed."},
      {"an answer followed by a failing exit", ended(exited(1), "first\nlast\n", true), "exited with status 1: last"},
      {"the deadline before what the killed child said",
       killedFor(ChildKill::deadline, "A: Fatal error: too late\n", 8 * 1024),
       "exceeded the deadline of 0.25 s",
       {250ms, kLimits.memoryCeilingBytes}},
      {"the ceiling, rounded up", killedFor(ChildKill::memory, "", 30 * 1024 + 1),
       "exceeded the memory ceiling of 30 MB (peak 30.1 MB)"},
      {"a finished child over the ceiling", ended(exited(0), "", true, 41 * 1024),
       "exceeded the memory ceiling of 30 MB (peak 41 MB)"},
      {"a finished child at the ceiling", ended(exited(0), "", true, 30 * 1024), std::nullopt},
      {"an uncaught error", threw("boom"), "stopped by an uncaught error: boom"},
      {"a deadline in milliseconds",
       killedFor(ChildKill::deadline, "", 0),
       "exceeded the deadline of 0.001 s",
       {1ms, kLimits.memoryCeilingBytes}},
      {"a deadline of seconds and a half",
       killedFor(ChildKill::deadline, "", 0),
       "exceeded the deadline of 1.5 s",
       {1500ms, kLimits.memoryCeilingBytes}},
      {"a ceiling under a megabyte",
       killedFor(ChildKill::memory, "", 1024),
       "exceeded the memory ceiling of 0.5 MB (peak 1 MB)",
       {5000ms, 512 * 1024}},
  };
  for (const auto& ending : endings) {
    EXPECT_EQ(failureReason(ending.end, ending.limits), ending.reason) << ending.name;
  }
}

}  // namespace
}  // namespace quillan::worker
