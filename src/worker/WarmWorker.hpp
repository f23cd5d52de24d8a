#pragma once

#include <nlohmann/json.hpp>

#include "worker/WorkerOptions.hpp"

namespace quillan::worker {

// The warm worker: a single-threaded process that has loaded what every
// evaluation needs and forks a fresh child for each request read from
// `hostSocket`, so nothing one evaluation does (a stop, a leak, a journal
// connection) reaches the next. What it keeps itself is a read of the note
// dates, proved current before each use (NoteDatesKeeper). It answers each
// request with
//   {"answer": {"timeline": ...} | {"view": ...}, "log": [...], "cost": {...}}
// or {"failure": "<reason>", "log": [...], "cost": {...}}, and leaves when the
// host closes the socket. {"type": "together", "requests": [timeline or view
// requests]} (an entry's light and dark views, say) is answered with one such
// reply per request, in order, each as the request alone would have been
// answered; they are evaluated in one child when it answers them all cleanly.
[[noreturn]] void runWarmWorker(int hostSocket, const WorkerOptions& options);

// One request, evaluated in a forked child watched under the options' limits.
// `closeInChild` is a descriptor the child must not keep (the host socket).
nlohmann::json evaluateInChild(const nlohmann::json& request, const WorkerOptions& options, int closeInChild);

}  // namespace quillan::worker
