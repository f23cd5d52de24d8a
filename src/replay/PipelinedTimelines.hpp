#pragma once

#include <string>
#include <vector>

#include "host/TimelineSource.hpp"
#include "host/WorkerTimelineSource.hpp"
#include "replay/EvaluationPipeline.hpp"

namespace quillan::replay {

// The host's timeline source in a replay: the extension's providers asked
// through the pipeline. After the app's write the host asks every widget for a
// timeline at once, and those asks, expected, run side by side.
class PipelinedTimelines {
 public:
  // The pipeline must outlive this object and its sources.
  PipelinedTimelines(EvaluationPipeline& pipeline, worker::ProcessSettings settings, host::WorkerLogListener log);

  // Asks as host::workerTimelineSource does, with this object's settings.
  host::TimelineSource source();
  // The host is about to ask for the timelines of `kinds`, in this order, at `at`.
  void expect(const std::vector<std::string>& kinds, platform::Date at);

 private:
  worker::TimelineEvaluation evaluationOf(std::string kind, platform::Date at) const;

  EvaluationPipeline& pipeline_;
  worker::ProcessSettings settings_;
  host::WorkerLogListener log_;
};

}  // namespace quillan::replay
