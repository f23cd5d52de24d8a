#include "server/ServeLoop.hpp"

#include <signal.h>

#include "server/Server.hpp"

namespace quillan::server {
namespace {

sigset_t stopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

}  // namespace

void serveUntilStopped(const ServerOptions& options, const std::function<void(int port)>& listening) {
  Server server(options);
  const auto signals = stopSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  listening(server.start());
  int received = 0;
  sigwait(&signals, &received);
  server.stop();
}

}  // namespace quillan::server
