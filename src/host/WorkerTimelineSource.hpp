#pragma once

#include <functional>
#include <string_view>

#include "host/TimelineSource.hpp"
#include "worker/Evaluation.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::host {

// Hears the extension's log lines and the worker's notes of each ask, by kind.
using WorkerLogListener = std::function<void(std::string_view kind, std::string_view line)>;

// The scheduler's timeline source backed by `worker`: each ask is a timeline
// request evaluated in a fresh child under `settings`, with the clock pinned
// to the ask's instant; a failed evaluation becomes a TimelineFailure with
// its reason. `worker` must outlive the source.
TimelineSource workerTimelineSource(worker::WidgetWorker& worker, worker::ProcessSettings settings = {},
                                    WorkerLogListener log = {});

}  // namespace quillan::host
