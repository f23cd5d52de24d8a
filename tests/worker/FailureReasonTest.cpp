#include <gtest/gtest.h>

#include <csignal>

#include "support/GoldenQuestion.hpp"
#include "worker/FailureReason.hpp"

namespace quillan::worker {
namespace {

// "HOW | STDERR | PEAK-KB | DEADLINE-MS CEILING-BYTES": HOW is "exited N"
// or "signal N", then "answered", "killed-for deadline|memory" or "threw
// MESSAGE" as the child's end had them; STDERR escaped as unescaped() reads it.
ChildEnd childEnd(const std::vector<std::string>& cells) {
  const auto how = quillan::testing::words(cells[0]);
  ChildEnd end;
  end.waitStatus = how[0] == "exited" ? std::stoi(how[1]) << 8 : std::stoi(how[1]);
  for (std::size_t word = 2; word < how.size(); ++word) {
    if (how[word] == "answered") end.answered = true;
    else if (how[word] == "killed-for")
      end.killedFor = how[++word] == "deadline" ? ChildKill::deadline : ChildKill::memory;
    else if (how[word] == "threw") end.exception = how[++word];
  }
  end.stderrText = quillan::testing::unescaped(cells[1]);
  end.peakKilobytes = std::stoll(cells[2]);
  return end;
}

std::string reasonAnswer(const std::string& question) {
  const auto cells = quillan::testing::cells(question);
  const auto limits = quillan::testing::words(cells[3]);
  const auto reason = failureReason(childEnd(cells),
                                    {std::chrono::milliseconds(std::stoll(limits[0])), std::stoll(limits[1])});
  return reason.value_or("no failure");
}

TEST(FailureReason, EachWayAChildEndsHasItsReason) {
  quillan::testing::expectGoldenAnswers("failure_reasons.txt", reasonAnswer);
}

}  // namespace
}  // namespace quillan::worker
