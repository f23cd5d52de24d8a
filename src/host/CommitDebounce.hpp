#pragma once

#include <chrono>
#include <optional>

#include "host/JournalCommitMark.hpp"

namespace quillan::host {

// When the app's writes to its journal become reloads ("reload all
// timelines"). Writes come in bursts: a commit writes its log frame by frame,
// a checkpoint may follow, and an app may commit many times in a row.
//
// - Leading edge: the first write after a quiet spell starts a burst, and the
//   burst's first reload is made as soon as the files' commit mark moves,
//   i.e. once the commit is finished and a reader sees it.
// - Trailing edge: what is written after that reload, until the files have
//   been quiet for `quiet` (or `longest` after the burst's first write), is
//   one more reload at the burst's end, made only when the mark shows another
//   commit since (committedSince): the same commit's checkpoint, or the app
//   closing its log, shows none, so one commit is never reloaded twice.
// - A burst whose mark never moves (or cannot be read), or one that starts
//   while the writes before it never stopped, is one reload at its end.
//
// Pure logic on times the caller gives; JournalWatcher reads the files.
class CommitDebounce {
 public:
  using Clock = std::chrono::steady_clock;

  struct Timing {
    std::chrono::milliseconds quiet{50};
    std::chrono::milliseconds longest{300};
    // How often the mark is read while the burst's commit is unfinished: the
    // commit's last step, the log index's header, is written through shared
    // memory, which inotify does not report.
    std::chrono::microseconds settleCheck{250};
  };

  // `settled`: the mark the host's timelines were last asked at.
  CommitDebounce(Timing timing, std::optional<JournalCommitMark> settled);

  // The journal or its log was written at `at`.
  void written(Clock::time_point at);
  // True while a burst is under way (and the mark is worth reading).
  bool pending() const { return burst_.has_value(); }
  // Given the mark read at `at`: true when a reload is due now.
  bool reloadDue(Clock::time_point at, const std::optional<JournalCommitMark>& mark);
  // When reloadDue should next be asked, with or without a write; empty when
  // only a write can make a reload due.
  std::optional<Clock::time_point> nextCheck(Clock::time_point now) const;

 private:
  struct Burst {
    Clock::time_point first;
    Clock::time_point last;
    bool leading = false;   // it began after a quiet spell: it may reload at once
    bool reloaded = false;  // its leading reload was made
  };

  Clock::time_point endOf(const Burst& burst) const;
  bool endBurst(const std::optional<JournalCommitMark>& mark);

  Timing timing_;
  std::optional<JournalCommitMark> settled_;
  std::optional<Burst> burst_;
  std::optional<Clock::time_point> lastWrite_;
};

}  // namespace quillan::host
