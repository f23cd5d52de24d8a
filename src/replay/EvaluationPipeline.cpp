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

void EvaluationPipeline::push(std::vector<nlohmann::json> requests, Start start) {
  Ahead ahead;
  ahead.requests = std::move(requests);
  ahead.start = std::move(start);
  ahead_.push_back(std::move(ahead));
}

void EvaluationPipeline::expect(std::vector<worker::ViewEvaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    push({std::move(request)},
         [evaluation = std::move(evaluation)](WidgetWorker& on) { return on.startView(evaluation); });
  }
  startWhatFits();
}

void EvaluationPipeline::expect(std::vector<worker::TimelineEvaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    push({std::move(request)},
         [evaluation = std::move(evaluation)](WidgetWorker& on) { return on.startTimeline(evaluation); });
  }
  startWhatFits();
}

void EvaluationPipeline::expectTogether(std::vector<std::vector<worker::ViewEvaluation>> upcoming) {
  for (auto& group : upcoming) {
    if (group.empty()) continue;
    std::vector<nlohmann::json> requests;
    for (const auto& evaluation : group) requests.push_back(worker::toJson(evaluation));
    push(std::move(requests), [group = std::move(group)](WidgetWorker& on) { return on.startViews(group); });
  }
  startWhatFits();
}

worker::Evaluation<widgets::TimelineAnswer> EvaluationPipeline::timeline(const worker::TimelineEvaluation& evaluation) {
  auto* next = expected(worker::toJson(evaluation));
  auto started = next && next->requests.size() == 1 ? takeStarted() : std::nullopt;
  if (!started) return workers_.front()->timeline(evaluation);
  auto answer = workers_[started->worker]->finishTimeline(std::move(*started->pending));
  startWhatFits();
  return answer;
}

worker::Evaluation<std::string> EvaluationPipeline::view(const worker::ViewEvaluation& evaluation) {
  auto* next = expected(worker::toJson(evaluation));
  if (next && next->requests.size() > 1) return nextOfTogether(*next, evaluation);
  auto started = next ? takeStarted() : std::nullopt;
  if (!started) return workers_.front()->view(evaluation);
  auto answer = workers_[started->worker]->finishView(std::move(*started->pending));
  startWhatFits();
  return answer;
}

EvaluationPipeline::Ahead* EvaluationPipeline::expected(const nlohmann::json& request) {
  while (!ahead_.empty() && ahead_.front().requests[ahead_.front().handedOut] != request) dropFirst();
  return ahead_.empty() ? nullptr : &ahead_.front();
}

std::optional<EvaluationPipeline::Ahead> EvaluationPipeline::takeStarted() {
  auto first = std::move(ahead_.front());
  ahead_.pop_front();
  if (!first.pending) return std::nullopt;
  busy_[first.worker] = false;
  return first;
}

// The views of a group are read together on the first one's asking and handed
// out in turn; a group never started is asked for view by view.
worker::Evaluation<std::string> EvaluationPipeline::nextOfTogether(Ahead& group,
                                                                   const worker::ViewEvaluation& evaluation) {
  if (group.pending) {
    busy_[group.worker] = false;
    group.views = workers_[group.worker]->finishViews(std::move(*group.pending));
    group.pending.reset();
    startWhatFits();
  }
  if (!group.started) {
    ahead_.pop_front();
    return workers_.front()->view(evaluation);
  }
  auto answer = std::move(group.views[group.handedOut++]);
  if (group.handedOut == group.requests.size()) ahead_.pop_front();
  return answer;
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
    if (next->started) continue;
    const auto free = freeWorker();
    if (!free) return;
    try {
      next->pending = next->start(*workers_[*free]);
    } catch (const std::invalid_argument&) {
      // An evaluation the worker refuses is refused when it is asked for, in its turn.
      ahead_.erase(next, ahead_.end());
      return;
    }
    next->started = true;
    next->worker = *free;
    busy_[*free] = true;
  }
}

void EvaluationPipeline::dropFirst() {
  auto& first = ahead_.front();
  if (first.pending) {
    busy_[first.worker] = false;
    // The worker answers in order: what it was asked is read, and dropped.
    workers_[first.worker]->discard(std::move(*first.pending));
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
