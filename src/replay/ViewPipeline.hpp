#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "worker/WidgetWorker.hpp"

namespace quillan::replay {

// Evaluates the views a replay is about to ask for ahead of the asking, each
// on the first of its workers that is free, so that they run side by side and
// while the replay draws. The answers are the workers' own: a view asked for
// as expected gets the evaluation made for it, in the order asked. Views are
// only expected where no evaluation can change what another one reads (the
// replay's private journal, between two of its writes).
class ViewPipeline {
 public:
  // The workers must outlive the pipeline.
  explicit ViewPipeline(std::vector<worker::WidgetWorker*> workers);
  ~ViewPipeline();
  ViewPipeline(const ViewPipeline&) = delete;
  ViewPipeline& operator=(const ViewPipeline&) = delete;

  // The views to be asked for next, in the order they will be asked.
  void expect(std::vector<worker::ViewEvaluation> upcoming);
  // The view of `evaluation`, as WidgetWorker::view answers it. Views expected
  // before it and not asked for are dropped, their answers unseen.
  worker::Evaluation<std::string> view(const worker::ViewEvaluation& evaluation);
  // Drops every view still expected; the workers are free again afterwards.
  void forgetExpected();
  // Passes on to every worker (WidgetWorker::hear), once none is busy.
  void hear(const worker::JournalWriteNotice& notice);

 private:
  struct Ahead {
    worker::ViewEvaluation evaluation;
    nlohmann::json request;
    std::size_t worker = 0;
    std::optional<worker::WidgetWorker::PendingView> pending;
  };

  void startWhatFits();
  void dropFirst();
  std::optional<std::size_t> freeWorker() const;

  std::vector<worker::WidgetWorker*> workers_;
  std::vector<bool> busy_;
  std::deque<Ahead> ahead_;  // the ones started come first
};

}  // namespace quillan::replay
