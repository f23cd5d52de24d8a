#include "replay/PipelinedTimelines.hpp"

namespace quillan::replay {

PipelinedTimelines::PipelinedTimelines(EvaluationPipeline& pipeline, worker::ProcessSettings settings,
                                       host::WorkerLogListener log)
    : pipeline_(pipeline), settings_(std::move(settings)), log_(std::move(log)) {}

worker::TimelineEvaluation PipelinedTimelines::evaluationOf(std::string kind, platform::Date at) const {
  return {std::move(kind), at, widgets::TimelineRequest::timeline, settings_};
}

host::TimelineSource PipelinedTimelines::source() {
  return [this](std::string_view kind, platform::Date at) -> host::TimelineOutcome {
    auto evaluation = pipeline_.timeline(evaluationOf(std::string(kind), at));
    if (log_) {
      for (const auto& line : evaluation.log) log_(kind, line);
    }
    if (const auto* failure = evaluation.failure()) return host::TimelineFailure{failure->reason};
    return std::move(*std::get_if<widgets::TimelineAnswer>(&evaluation.outcome));
  };
}

void PipelinedTimelines::expect(const std::vector<std::string>& kinds, platform::Date at) {
  std::vector<worker::TimelineEvaluation> upcoming;
  for (const auto& kind : kinds) upcoming.push_back(evaluationOf(kind, at));
  pipeline_.expect(std::move(upcoming));
}

}  // namespace quillan::replay
