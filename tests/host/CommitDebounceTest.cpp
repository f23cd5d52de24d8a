// The watcher's decisions on a fake clock: which writes and commit marks, at
// which moments, become reloads of every timeline.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <vector>

#include "host/CommitDebounce.hpp"

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
  const struct {
    const char* name;
    Script script;
    std::vector<int> reloads;
  } cases[] = {
      {"a commit after a quiet spell, finished by its write", {{0}, {{0, 'b'}}}, {0}},
      {"a commit whose index header comes after its log frames", {{0, 1, 2}, {{5, 'b'}}}, {5}},
      {"the commit's checkpoint into the main file", {{0, 10, 20}, {{0, 'b'}}}, {0}},
      {"two commits far apart", {{0, 100}, {{0, 'b'}, {100, 'c'}}}, {0, 100}},
      {"a burst of commits: the first at once, the rest once quiet",
       {{0, 5, 10, 15}, {{0, 'b'}, {5, 'c'}, {15, 'e'}}},
       {0, 65}},
      {"writes that never move the mark, once quiet", {{0, 10}, {}}, {60}},
      {"a mark that cannot be read, once quiet", {{0}, {{0, '?'}}}, {50}},
      {"a mark unreadable after the commit's reload, once quiet", {{0, 10}, {{0, 'b'}, {10, '?'}}}, {0, 60}},
      {"a mark that moves back, once quiet", {{0, 10}, {{0, 'b'}, {10, 'a'}}}, {0, 60}},
      {"the app closing its log after the commit", {{0, 10, 20}, {{0, 'b'}, {20, 'B'}}}, {0}},
      {"a journal moved into place after the commit", {{0, 10}, {{0, 'b'}, {10, '*'}}}, {0, 60}},
      {"a commit after the app closed its log", {{0, 20, 200}, {{0, 'b'}, {20, 'B'}, {200, 'c'}}}, {0, 200}},
      {"a commit in rollback mode, finished when its journal goes", {{0, 10}, {{-1, 'A'}, {0, '?'}, {10, 'C'}}}, {10}},
      {"a commit in rollback mode after the log was used, once quiet", {{0, 10}, {{0, '?'}, {10, 'C'}}}, {60}},
      {"a trickle: at once, then at each longest wait",
       {{0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200, 220, 240, 260, 280, 300, 320, 340},
        {{0, 'b'}, {20, 'c'}, {320, 'd'}}},
       {0, 300, 390}},
      {"a commit after the longest wait ended a trickle but not after a quiet spell",
       {{0, 40, 80, 120, 160, 200, 240, 280, 320}, {{0, 'b'}, {40, 'c'}, {320, 'd'}}},
       {0, 300, 370}},
      {"a commit after a quiet spell that followed a trickle",
       {{0, 40, 80, 120, 160, 200, 240, 280, 400}, {{0, 'b'}, {280, 'c'}, {400, 'd'}}},
       {0, 300, 400}},
  };
  for (const auto& example : cases) {
    SCOPED_TRACE(example.name);
    EXPECT_EQ(reloadsOf(example.script), example.reloads);
  }
}

}  // namespace
}  // namespace quillan::host
