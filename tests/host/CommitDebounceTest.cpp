// The watcher's decisions on a fake clock: which writes and commit marks, at
// which moments, become reloads of every timeline.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <vector>

#include "host/CommitDebounce.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::host {
namespace {

using namespace std::chrono_literals;
using Clock = CommitDebounce::Clock;

constexpr CommitDebounce::Timing kTiming{50ms, 300ms, 1ms};

// 'b': a commit in the log; 'B': the same in the main file alone, the log
// gone; '*': another journal moved into place; '?': the files vouch for nothing.
std::optional<JournalCommitMark> markOf(char name) {
  if (name == '?') return std::nullopt;
  if (name == '*') return JournalCommitMark{"another journal", "a", true};
  const bool inLog = std::islower(name) != 0;
  return JournalCommitMark{"journal", std::string(1, static_cast<char>(std::tolower(name))), inLog};
}

struct Script {
  std::vector<int> writes;    // milliseconds at which the journal or its log is written
  std::map<int, char> marks;  // from which millisecond on the files show which mark ('a' before, or at -1)
};

// Drives the debounce as the watcher does: it wakes at each write and at each
// check the debounce asks for, reads the mark of that moment and reloads when
// told to. Returns the milliseconds of the reloads.
std::vector<int> reloadsOf(const Script& script) {
  const auto start = Clock::time_point{} + 1h;
  const auto at = [&](int milliseconds) { return start + std::chrono::milliseconds(milliseconds); };
  const auto markAt = [&](Clock::time_point now) {
    char mark = 'a';
    for (const auto& [from, name] : script.marks) {
      if (at(from) <= now) mark = name;
    }
    return markOf(mark);
  };
  CommitDebounce debounce(kTiming, markAt(at(-1)));
  std::vector<int> reloads;
  auto write = script.writes.begin();
  auto now = start;
  while (true) {
    std::optional<Clock::time_point> wake = debounce.nextCheck(now);
    const bool writing = write != script.writes.end() && (!wake || at(*write) <= *wake);
    if (writing) wake = at(*write);
    if (!wake) break;
    now = std::max(now, *wake);
    if (writing) {
      debounce.written(now);
      ++write;
    }
    if (debounce.pending() && debounce.reloadDue(now, markAt(now))) {
      reloads.push_back(static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(now - start).count()));
    }
  }
  return reloads;
}

TEST(CommitDebounce, ReloadsAFinishedCommitAtOnceAndCoalescesTheRestOfItsBurst) {
  quillan::testing::expectGoldenAnswers("commit_debounce.txt", [](const std::string& question) {
    const auto cells = quillan::testing::cells(question);
    Script script;
    for (const auto& write : quillan::testing::words(cells[0])) script.writes.push_back(std::stoi(write));
    for (const auto& mark : quillan::testing::words(cells[1]))
      script.marks[std::stoi(mark.substr(0, mark.find(':')))] = mark.back();
    std::string reloads;
    for (const int at : reloadsOf(script)) reloads += (reloads.empty() ? "" : " ") + std::to_string(at);
    return reloads.empty() ? std::string("none") : reloads;
  });
}

}  // namespace
}  // namespace quillan::host
