#include "replay/EvaluationPipeline.hpp"

#include <stdexcept>

#include "worker/EvaluationJson.hpp"

namespace quillan::replay {

using worker::WidgetWorker;

EvaluationPipeline::EvaluationPipeline(std::vector<WidgetWorker*> workers)
    : workers_(std::move(workers)), busy_(workers_.size(), false) {
  if (workers_.empty()) throw std::invalid_argument("an evaluation pipeline needs a worker");
}

EvaluationPipeline::~EvaluationPipeline() { forgetExpected(); }

void EvaluationPipeline::expect(std::vector<worker::ViewEvaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    ahead_.push_back({std::move(request),
                      [evaluation = std::move(evaluation)](WidgetWorker& on) { return on.startView(evaluation); }, 0,
                      std::nullopt});
  }
  startWhatFits();
}

void EvaluationPipeline::expect(std::vector<worker::TimelineEvaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    ahead_.push_back({std::move(request),
                      [evaluation = std::move(evaluation)](WidgetWorker& on) { return on.startTimeline(evaluation); },
                      0, std::nullopt});
  }
  startWhatFits();
}

worker::Evaluation<widgets::TimelineAnswer> EvaluationPipeline::timeline(const worker::TimelineEvaluation& evaluation) {
  auto started = takeStarted(worker::toJson(evaluation));
  if (!started) return workers_.front()->timeline(evaluation);
  auto answer = workers_[started->worker]->finishTimeline(std::move(*started->pending));
  startWhatFits();
  return answer;
}

worker::Evaluation<std::string> EvaluationPipeline::view(const worker::ViewEvaluation& evaluation) {
  auto started = takeStarted(worker::toJson(evaluation));
  if (!started) return workers_.front()->view(evaluation);
  auto answer = workers_[started->worker]->finishView(std::move(*started->pending));
  startWhatFits();
  return answer;
}

std::optional<EvaluationPipeline::Ahead> EvaluationPipeline::takeStarted(const nlohmann::json& request) {
  while (!ahead_.empty() && ahead_.front().request != request) dropFirst();
  if (ahead_.empty()) return std::nullopt;
  auto first = std::move(ahead_.front());
  ahead_.pop_front();
  if (!first.pending) return std::nullopt;
  busy_[first.worker] = false;
  return first;
}

void EvaluationPipeline::forgetExpected() {
  while (!ahead_.empty()) dropFirst();
}

void EvaluationPipeline::hear(const worker::JournalWriteNotice& notice) {
  forgetExpected();
  for (auto* worker : workers_) worker->hear(notice);
}

void EvaluationPipeline::startWhatFits() {
  for (auto next = ahead_.begin(); next != ahead_.end(); ++next) {
    if (next->pending) continue;
    const auto free = freeWorker();
    if (!free) return;
    try {
      next->pending = next->start(*workers_[*free]);
    } catch (const std::invalid_argument&) {
      // An evaluation the worker refuses is refused when it is asked for, in its turn.
      ahead_.erase(next, ahead_.end());
      return;
    }
    next->worker = *free;
    busy_[*free] = true;
  }
}

void EvaluationPipeline::dropFirst() {
  auto& first = ahead_.front();
  if (first.pending) {
    busy_[first.worker] = false;
    // Its answer, of whichever kind, is read and dropped: the worker answers in order.
    workers_[first.worker]->finishView(std::move(*first.pending));
  }
  ahead_.pop_front();
}

std::optional<std::size_t> EvaluationPipeline::freeWorker() const {
  for (std::size_t index = 0; index < busy_.size(); ++index) {
    if (!busy_[index]) return index;
  }
  return std::nullopt;
}

}  // namespace quillan::replay
