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

void EvaluationPipeline::push(std::vector<nlohmann::json> requests, Start start, Finish finish) {
  Ahead ahead;
  ahead.requests = std::move(requests);
  ahead.start = std::move(start);
  ahead.finish = std::move(finish);
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

namespace {

template <typename Evaluation>
std::vector<nlohmann::json> requestsOf(const std::vector<Evaluation>& group) {
  std::vector<nlohmann::json> requests;
  for (const auto& evaluation : group) requests.push_back(worker::toJson(evaluation));
  return requests;
}

template <typename Answer>
std::vector<std::variant<worker::Evaluation<std::string>, worker::Evaluation<widgets::TimelineAnswer>>> asAnswers(
    std::vector<worker::Evaluation<Answer>> answers) {
  return {std::make_move_iterator(answers.begin()), std::make_move_iterator(answers.end())};
}

}  // namespace

void EvaluationPipeline::expectTogether(std::vector<std::vector<worker::ViewEvaluation>> upcoming) {
  for (auto& group : upcoming) {
    if (group.empty()) continue;
    auto requests = requestsOf(group);
    push(
        std::move(requests), [group = std::move(group)](WidgetWorker& on) { return on.startViews(group); },
        [](WidgetWorker& on, WidgetWorker::PendingEvaluation pending) {
          return asAnswers(on.finishViews(std::move(pending)));
        });
  }
  startWhatFits();
}

void EvaluationPipeline::expectTogether(std::vector<std::vector<worker::TimelineEvaluation>> upcoming) {
  for (auto& group : upcoming) {
    if (group.empty()) continue;
    auto requests = requestsOf(group);
    push(
        std::move(requests), [group = std::move(group)](WidgetWorker& on) { return on.startTimelines(group); },
        [](WidgetWorker& on, WidgetWorker::PendingEvaluation pending) {
          return asAnswers(on.finishTimelines(std::move(pending)));
        });
  }
  startWhatFits();
}

worker::Evaluation<widgets::TimelineAnswer> EvaluationPipeline::timeline(const worker::TimelineEvaluation& evaluation) {
  auto* next = expected(worker::toJson(evaluation));
  if (next && next->finish) {
    return nextOfTogether<widgets::TimelineAnswer>(*next, [&] { return workers_.front()->timeline(evaluation); });
  }
  auto started = next ? takeStarted() : std::nullopt;
  if (!started) return workers_.front()->timeline(evaluation);
  auto answer = workers_[started->worker]->finishTimeline(std::move(*started->pending));
  startWhatFits();
  return answer;
}

worker::Evaluation<std::string> EvaluationPipeline::view(const worker::ViewEvaluation& evaluation) {
  auto* next = expected(worker::toJson(evaluation));
  if (next && next->finish) {
    return nextOfTogether<std::string>(*next, [&] { return workers_.front()->view(evaluation); });
  }
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

// The answers of a group are read together on the first one's asking and
// handed out in turn; those of a group never started, or left unanswered
// when its worker was given up, are asked for one by one.
template <typename Answer>
worker::Evaluation<Answer> EvaluationPipeline::nextOfTogether(
    Ahead& group, const std::function<worker::Evaluation<Answer>()>& alone) {
  if (group.pending) {
    busy_[group.worker] = false;
    group.answers = group.finish(*workers_[group.worker], std::move(*group.pending));
    group.pending.reset();
    startWhatFits();
  }
  if (!group.started || group.handedOut == group.answers.size()) {
    ahead_.pop_front();
    return alone();
  }
  auto answer = std::get<worker::Evaluation<Answer>>(std::move(group.answers[group.handedOut++]));
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
