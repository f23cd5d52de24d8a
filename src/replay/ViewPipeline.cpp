#include "replay/ViewPipeline.hpp"

#include <stdexcept>

#include "worker/EvaluationJson.hpp"

namespace quillan::replay {

ViewPipeline::ViewPipeline(std::vector<worker::WidgetWorker*> workers)
    : workers_(std::move(workers)), busy_(workers_.size(), false) {
  if (workers_.empty()) throw std::invalid_argument("a view pipeline needs a worker");
}

ViewPipeline::~ViewPipeline() { forgetExpected(); }

void ViewPipeline::expect(std::vector<worker::ViewEvaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    ahead_.push_back({std::move(evaluation), std::move(request), 0, std::nullopt});
  }
  startWhatFits();
}

worker::Evaluation<std::string> ViewPipeline::view(const worker::ViewEvaluation& evaluation) {
  const auto request = worker::toJson(evaluation);
  while (!ahead_.empty() && ahead_.front().request != request) dropFirst();
  if (ahead_.empty()) return workers_.front()->view(evaluation);
  auto first = std::move(ahead_.front());
  ahead_.pop_front();
  if (!first.pending) return workers_.front()->view(evaluation);
  busy_[first.worker] = false;
  auto answer = workers_[first.worker]->finishView(std::move(*first.pending));
  startWhatFits();
  return answer;
}

void ViewPipeline::forgetExpected() {
  while (!ahead_.empty()) dropFirst();
}

void ViewPipeline::hear(const worker::JournalWriteNotice& notice) {
  forgetExpected();
  for (auto* worker : workers_) worker->hear(notice);
}

void ViewPipeline::startWhatFits() {
  for (auto next = ahead_.begin(); next != ahead_.end(); ++next) {
    if (next->pending) continue;
    const auto free = freeWorker();
    if (!free) return;
    try {
      next->pending = workers_[*free]->startView(next->evaluation);
    } catch (const std::invalid_argument&) {
      // A view the worker refuses is refused when it is asked for, in its turn.
      ahead_.erase(next, ahead_.end());
      return;
    }
    next->worker = *free;
    busy_[*free] = true;
  }
}

void ViewPipeline::dropFirst() {
  auto& first = ahead_.front();
  if (first.pending) {
    busy_[first.worker] = false;
    workers_[first.worker]->finishView(std::move(*first.pending));
  }
  ahead_.pop_front();
}

std::optional<std::size_t> ViewPipeline::freeWorker() const {
  for (std::size_t index = 0; index < busy_.size(); ++index) {
    if (!busy_[index]) return index;
  }
  return std::nullopt;
}

}  // namespace quillan::replay
