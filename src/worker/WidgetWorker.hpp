#pragma once

#include <sys/types.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "worker/ChildReaper.hpp"
#include "worker/Evaluation.hpp"
#include "worker/JournalWriteNotice.hpp"
#include "worker/WorkerOptions.hpp"

namespace quillan::worker {

// Runs the extension's code out of the host's process, as the phone does: a
// fatal stop, a signal, running past the deadline or past the memory ceiling
// fails that one evaluation, never the host.
//
// Keepers are started from options.keeperImage when it is set (the live
// host does so: it grows, and a keeper forked from it would start above the
// memory ceiling), else forked. A keeper that ends is reaped at once; one
// found gone is started again.
//
// Construct it once, early: before the host starts threads and before it
// opens the journal through SQLite in any way (SQLite keeps per-file state,
// such as the shared-memory handle, for the whole process, and a forked child
// would inherit it with descriptors it does not own), and after it has set the process's defaults
// (group container, zone, locale), which evaluations inherit unless their
// ProcessSettings say otherwise. The constructor forks a keeper process that
// loads ICU's data and the bundle and forks a warm worker; the warm worker
// forks a fresh child for each evaluation (or for evaluations asked for
// together: startViews), which applies the evaluation's settings, pins the clock, reads the journal through the store
// as the command does (nothing is kept from one evaluation to the next but the warm worker's read of the note dates,
// used only while the journal's files prove it current: NoteDatesKeeper.hpp), answers, and ends. A warm worker found
// dead is replaced before the next evaluation, and the answer's log says so.
//
// Measured on a shared two-core machine (optimised build): the warm worker
// sits at about 2.3 MB resident; a child of it starts at about 3.3 MB and an
// empty evaluation costs about 7 ms from fork to reap (the fork itself about
// 1 ms). A widget's timeline and view together take 20-45 ms and peak at
// 5-10 MB, well under the 30 MB ceiling.
//
// Calls are serialised (one evaluation at a time); a host that wants
// evaluations in parallel keeps several workers, constructed up front, and
// starts a view on each before it waits for any (startView).
class WidgetWorker {
 private:
  struct Reply {
    nlohmann::json answer;  // null on failure
    std::optional<std::string> failure;
    std::vector<std::string> log;
    EvaluationCost cost;
  };
  struct Exchange {
    std::unique_lock<std::mutex> lock;
    Reply reply;  // a restart's note, or the failure to send
    // When the next reply's wait began; unset once nothing more is to be read.
    std::optional<std::chrono::steady_clock::time_point> sentAt;
    // Beyond the deadline and its grace, what the first reply may take
    // (evaluations asked for together may be tried in one child before each
    // is evaluated alone).
    std::chrono::milliseconds firstReplyExtra{0};
  };

 public:
  // An evaluation on its way: it runs while the caller does other things,
  // and the worker takes no other call until it is finished.
  class PendingEvaluation {
   public:
    PendingEvaluation(PendingEvaluation&&) = default;
    PendingEvaluation& operator=(PendingEvaluation&&) = default;

   private:
    friend class WidgetWorker;
    explicit PendingEvaluation(Exchange exchange, std::size_t replies = 1)
        : exchange(std::move(exchange)), replies(replies) {}
    Exchange exchange;
    std::size_t replies;  // more than one for evaluations asked for together
  };

  // Throws std::runtime_error when the processes cannot be started, and
  // std::invalid_argument for a deadline or ceiling that is not positive.
  explicit WidgetWorker(WorkerOptions options = {});
  ~WidgetWorker();
  WidgetWorker(const WidgetWorker&) = delete;
  WidgetWorker& operator=(const WidgetWorker&) = delete;

  // Throw std::invalid_argument, without evaluating, for an unknown kind, a
  // date that is not finite, an unknown time zone or locale, or a family the
  // widget is not offered in.
  Evaluation<widgets::TimelineAnswer> timeline(const TimelineEvaluation& evaluation);
  // The view tree as JSON (docs/view-tree.md), as `render --format json` prints its "view".
  Evaluation<std::string> view(const ViewEvaluation& evaluation);
  // timeline() and view() in two halves: the first throws as they do, the
  // second answers as they would have.
  PendingEvaluation startTimeline(const TimelineEvaluation& evaluation);
  Evaluation<widgets::TimelineAnswer> finishTimeline(PendingEvaluation pending);
  PendingEvaluation startView(const ViewEvaluation& evaluation);
  Evaluation<std::string> finishView(PendingEvaluation pending);
  // Timelines or views asked for together, as the app's reload of every
  // widget and an entry's light and dark views are: the answers are those
  // timeline() or view() gives each of them in turn, logs included, but the
  // warm worker evaluates them in one child when that child answers them all
  // cleanly, reading the journal and loading what they share once. Throw as
  // startTimeline() and startView() do for any of them, before anything is
  // sent. An answer that gives the worker up (it stopped, or did not answer)
  // is the last: those after it are left to be asked for alone, if at all, so
  // that the restart and its note come with the next evaluation asked for.
  PendingEvaluation startTimelines(const std::vector<TimelineEvaluation>& evaluations);
  std::vector<Evaluation<widgets::TimelineAnswer>> finishTimelines(PendingEvaluation pending);
  PendingEvaluation startViews(const std::vector<ViewEvaluation>& evaluations);
  std::vector<Evaluation<std::string>> finishViews(PendingEvaluation pending);
  // Reads and drops what `pending` answers, of whichever kind.
  void discard(PendingEvaluation pending);

  // Tells the warm worker of the host's own write (JournalWriteNotice). Only
  // a hint: a warm worker that is not running is not started for it, and one
  // that cannot use it reads the dates again.
  void hear(const JournalWriteNotice& notice);

  const WorkerOptions& options() const { return options_; }
  // The warm worker's process id, 0 while none runs.
  pid_t warmWorkerPid() const;
  // The keeper's process id, 0 while none runs.
  pid_t keeperPid() const;

 private:
  Exchange send(const nlohmann::json& request);
  // The next reply of `exchange`; once the worker is given up, nothing more is read.
  Reply receive(Exchange& exchange);
  void validateView(const ViewEvaluation& evaluation) const;
  static Evaluation<std::string> viewOf(const Reply& reply);
  static Evaluation<widgets::TimelineAnswer> timelineOf(const Reply& reply);
  Exchange sendTogether(nlohmann::json requests);
  // The replies of what was sent together, each read in turn, until the worker is given up.
  template <typename Answer>
  std::vector<Evaluation<Answer>> finishTogether(PendingEvaluation& pending,
                                                 Evaluation<Answer> (*answerOf)(const Reply&));
  void startKeeper();
  void ensureWarmWorker(std::vector<std::string>& log);
  void dropWarmWorker(bool kill);
  void validate(const std::string& kind, const ProcessSettings& settings,
                std::initializer_list<platform::Date> dates) const;
  const widgets::WidgetConfiguration& widget(const std::string& kind) const;

  WorkerOptions options_;
  ChildReaper reaper_;
  mutable std::mutex mutex_;
  int control_ = -1;
  pid_t keeper_ = 0;
  int socket_ = -1;
  pid_t warm_ = 0;
  bool lost_ = false;  // the warm worker was given up during an evaluation
};

}  // namespace quillan::worker
