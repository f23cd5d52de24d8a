#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "widgets/WidgetConfiguration.hpp"

namespace quillan::worker {

// What one evaluation answers: {"timeline": {...}} or {"view": "<view tree
// JSON>"}, or {"exception": "..."} when the extension threw. The request is a
// timeline or view request (see EvaluationJson.hpp). The extension's log lines
// go to `log` as they are printed. Applies the request's settings to this
// process first: it is meant to run in a child thrown away afterwards.
nlohmann::json evaluateRequest(const nlohmann::json& request, const std::vector<widgets::WidgetConfiguration>& widgets,
                               const std::function<void(std::string_view)>& log);

// The body of a forked child: standard error goes to `stderrFd`; `answerFd`
// receives one JSON object per line, {"log": "..."} for each log line as it
// is printed (so the lines before a fatal stop still arrive), then the answer,
// for each request in turn: each applies its own settings, its seed included.
// The process ends with _exit (or the extension's own stop) without running
// the exit handlers of the process it was forked from.
[[noreturn]] void runEvaluationChild(const std::vector<nlohmann::json>& requests,
                                     const std::vector<widgets::WidgetConfiguration>& widgets, int answerFd,
                                     int stderrFd);

}  // namespace quillan::worker
