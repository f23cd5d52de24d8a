#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

#include "worker/WidgetWorker.hpp"

namespace quillan::replay {

// Evaluates the timelines and views a replay is about to ask for ahead of the
// asking, each on the first of its workers that is free, so that they run side
// by side and while the replay draws. The answers are the workers' own: an
// evaluation asked for as expected gets the one made for it, in the order
// asked. Evaluations are only expected where none can change what another one
// reads (the replay's private journal, between two of its writes).
class EvaluationPipeline {
 public:
  // The workers must outlive the pipeline.
  explicit EvaluationPipeline(std::vector<worker::WidgetWorker*> workers);
  ~EvaluationPipeline();
  EvaluationPipeline(const EvaluationPipeline&) = delete;
  EvaluationPipeline& operator=(const EvaluationPipeline&) = delete;

  // The evaluations to be asked for next, in the order they will be asked.
  void expect(std::vector<worker::ViewEvaluation> upcoming);
  void expect(std::vector<worker::TimelineEvaluation> upcoming);
  // Groups to be asked for next, each group's in turn, evaluated together
  // (WidgetWorker::startViews, startTimelines): an entry's light and dark
  // views, the timelines of the app's reload.
  void expectTogether(std::vector<std::vector<worker::ViewEvaluation>> upcoming);
  void expectTogether(std::vector<std::vector<worker::TimelineEvaluation>> upcoming);
  // As WidgetWorker::timeline and WidgetWorker::view answer them. Evaluations
  // expected before one asked for and not asked for are dropped, their answers unseen.
  worker::Evaluation<widgets::TimelineAnswer> timeline(const worker::TimelineEvaluation& evaluation);
  worker::Evaluation<std::string> view(const worker::ViewEvaluation& evaluation);
  // Drops every evaluation still expected; the workers are free again afterwards.
  void forgetExpected();
  std::size_t workerCount() const { return workers_.size(); }
  // Passes on to every worker (WidgetWorker::hear), once none is busy.
  void hear(const worker::JournalWriteNotice& notice);

 private:
  using Start = std::function<worker::WidgetWorker::PendingEvaluation(worker::WidgetWorker&)>;
  using Answers =
      std::vector<std::variant<worker::Evaluation<std::string>, worker::Evaluation<widgets::TimelineAnswer>>>;
  using Finish = std::function<Answers(worker::WidgetWorker&, worker::WidgetWorker::PendingEvaluation)>;
  struct Ahead {
    std::vector<nlohmann::json> requests;  // one, or those evaluated together
    Start start;
    Finish finish;  // of those evaluated together
    bool started = false;
    std::size_t worker = 0;
    std::optional<worker::WidgetWorker::PendingEvaluation> pending;
    Answers answers;  // of those evaluated together, once read
    std::size_t handedOut = 0;
  };
  void push(std::vector<nlohmann::json> requests, Start start, Finish finish = {});
  template <typename Evaluation>
  void expectEach(std::vector<Evaluation> upcoming);
  template <typename Evaluation>
  void expectGroups(std::vector<std::vector<Evaluation>> upcoming);
  // The answer to `evaluation`, made ahead if it was expected, else now.
  template <typename Answer, typename Evaluation>
  worker::Evaluation<Answer> answer(const Evaluation& evaluation);
  // Drops what was expected before `request`; null when nothing expected is left.
  Ahead* expected(const nlohmann::json& request);
  // The first expected evaluation, single, if it was started; it leaves the queue either way.
  std::optional<Ahead> takeStarted();
  template <typename Answer>
  worker::Evaluation<Answer> nextOfTogether(Ahead& group, const std::function<worker::Evaluation<Answer>()>& alone);

  void startWhatFits();
  void dropFirst();
  std::optional<std::size_t> freeWorker() const;

  std::vector<worker::WidgetWorker*> workers_;
  std::vector<bool> busy_;
  std::deque<Ahead> ahead_;  // the ones started come first
};

}  // namespace quillan::replay
