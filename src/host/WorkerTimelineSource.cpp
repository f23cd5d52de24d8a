#include "host/WorkerTimelineSource.hpp"

namespace quillan::host {

TimelineSource workerTimelineSource(worker::WidgetWorker& worker, worker::ProcessSettings settings,
                                    WorkerLogListener log) {
  return [&worker, settings = std::move(settings), log = std::move(log)](std::string_view kind,
                                                                         platform::Date at) -> TimelineOutcome {
    auto evaluation = worker.timeline({std::string(kind), at, widgets::TimelineRequest::timeline, settings});
    if (log) {
      for (const auto& line : evaluation.log) log(kind, line);
    }
    if (const auto* failure = evaluation.failure()) return TimelineFailure{failure->reason};
    return std::move(*std::get_if<widgets::TimelineAnswer>(&evaluation.outcome));
  };
}

}  // namespace quillan::host
