#include "replay/PipelinedTimelines.hpp"

#include <algorithm>

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

// The reload's timelines are evaluated in as many groups as there are
// workers, each group in one child: side by side, and with a fork and a start
// of the extension for a group rather than for each widget.
void PipelinedTimelines::expect(const std::vector<std::string>& kinds, platform::Date at) {
  const auto groups = std::min(kinds.size(), pipeline_.workerCount());
  std::vector<std::vector<worker::TimelineEvaluation>> upcoming(groups);
  for (std::size_t index = 0; index < kinds.size(); ++index) {
    upcoming[index * groups / kinds.size()].push_back(evaluationOf(kinds[index], at));
  }
  pipeline_.expectTogether(std::move(upcoming));
}

}  // namespace quillan::replay
