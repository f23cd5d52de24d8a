#pragma once

#include <functional>

#include "server/ServerOptions.hpp"

namespace quillan::server {

// Runs a Server until SIGINT or SIGTERM, then stops it cleanly. The workers
// are forked first, before any thread exists; the two signals are then blocked
// in every thread and taken with sigwait. `listening` is called once with the
// bound port. Throws std::runtime_error when the address cannot be bound.
void serveUntilStopped(const ServerOptions& options, const std::function<void(int port)>& listening);

}  // namespace quillan::server
