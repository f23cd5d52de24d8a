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

namespace {

// What differs between views and timelines: which of the worker's calls
// starts and finishes them.
WidgetWorker::PendingEvaluation startOn(WidgetWorker& on, const worker::ViewEvaluation& evaluation) {
  return on.startView(evaluation);
}
WidgetWorker::PendingEvaluation startOn(WidgetWorker& on, const worker::TimelineEvaluation& evaluation) {
  return on.startTimeline(evaluation);
}
WidgetWorker::PendingEvaluation startOn(WidgetWorker& on, const std::vector<worker::ViewEvaluation>& group) {
  return on.startViews(group);
}
WidgetWorker::PendingEvaluation startOn(WidgetWorker& on, const std::vector<worker::TimelineEvaluation>& group) {
  return on.startTimelines(group);
}
auto finishOn(WidgetWorker& on, WidgetWorker::PendingEvaluation pending, const worker::ViewEvaluation*) {
  return on.finishView(std::move(pending));
}
auto finishOn(WidgetWorker& on, WidgetWorker::PendingEvaluation pending, const worker::TimelineEvaluation*) {
  return on.finishTimeline(std::move(pending));
}
auto finishGroupOn(WidgetWorker& on, WidgetWorker::PendingEvaluation pending, const worker::ViewEvaluation*) {
  return on.finishViews(std::move(pending));
}
auto finishGroupOn(WidgetWorker& on, WidgetWorker::PendingEvaluation pending, const worker::TimelineEvaluation*) {
  return on.finishTimelines(std::move(pending));
}
auto alone(WidgetWorker& on, const worker::ViewEvaluation& evaluation) { return on.view(evaluation); }
auto alone(WidgetWorker& on, const worker::TimelineEvaluation& evaluation) { return on.timeline(evaluation); }

}  // namespace

template <typename Evaluation>
void EvaluationPipeline::expectEach(std::vector<Evaluation> upcoming) {
  for (auto& evaluation : upcoming) {
    auto request = worker::toJson(evaluation);
    push({std::move(request)},
         [evaluation = std::move(evaluation)](WidgetWorker& on) { return startOn(on, evaluation); });
  }
  startWhatFits();
}

template <typename Evaluation>
void EvaluationPipeline::expectGroups(std::vector<std::vector<Evaluation>> upcoming) {
  for (auto& group : upcoming) {
    if (group.empty()) continue;
    std::vector<nlohmann::json> requests;
    for (const auto& evaluation : group) requests.push_back(worker::toJson(evaluation));
    push(
        std::move(requests), [group = std::move(group)](WidgetWorker& on) { return startOn(on, group); },
        [](WidgetWorker& on, WidgetWorker::PendingEvaluation pending) {
          auto answers = finishGroupOn(on, std::move(pending), static_cast<const Evaluation*>(nullptr));
          return Answers(std::make_move_iterator(answers.begin()), std::make_move_iterator(answers.end()));
        });
  }
  startWhatFits();
}

void EvaluationPipeline::expect(std::vector<worker::ViewEvaluation> upcoming) { expectEach(std::move(upcoming)); }

void EvaluationPipeline::expect(std::vector<worker::TimelineEvaluation> upcoming) { expectEach(std::move(upcoming)); }

void EvaluationPipeline::expectTogether(std::vector<std::vector<worker::ViewEvaluation>> upcoming) {
  expectGroups(std::move(upcoming));
}

void EvaluationPipeline::expectTogether(std::vector<std::vector<worker::TimelineEvaluation>> upcoming) {
  expectGroups(std::move(upcoming));
}

template <typename Answer, typename Evaluation>
worker::Evaluation<Answer> EvaluationPipeline::answer(const Evaluation& evaluation) {
  auto* next = expected(worker::toJson(evaluation));
  if (next && next->finish) {
    return nextOfTogether<Answer>(*next, [&] { return alone(*workers_.front(), evaluation); });
  }
  auto started = next ? takeStarted() : std::nullopt;
  if (!started) return alone(*workers_.front(), evaluation);
  auto answer = finishOn(*workers_[started->worker], std::move(*started->pending), &evaluation);
  startWhatFits();
  return answer;
}

worker::Evaluation<widgets::TimelineAnswer> EvaluationPipeline::timeline(const worker::TimelineEvaluation& evaluation) {
  return answer<widgets::TimelineAnswer>(evaluation);
}

worker::Evaluation<std::string> EvaluationPipeline::view(const worker::ViewEvaluation& evaluation) {
  return answer<std::string>(evaluation);
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
