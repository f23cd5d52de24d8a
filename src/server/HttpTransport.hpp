#pragma once

#include <httplib.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <set>

#include "server/ConnectionWaiter.hpp"

namespace quillan::server {

struct TransportLimits {
  ConnectionWaiter::Limits waiting;
  // The long-lived event streams each hold a worker: more than they may open.
  int workers = 16;
  // Reads a worker makes past what the waiter collected (a body that lied
  // about its length) end this long after the request was handed over.
  std::chrono::milliseconds readDeadline{2000};
  int requestsPerConnection = 100;
  int backlog = 128;
};

// The HTTP library's parsing, routing and answering over connections of our
// own keeping: the library's accepting thread hands each socket to a waiter,
// which collects whole requests without tying up a thread; a fixed pool of
// workers answers them, and a kept-alive connection goes back to the waiter
// between requests. Slow or idle clients so cannot starve the others.
class HttpTransport : public httplib::Server {
 public:
  explicit HttpTransport(TransportLimits limits = {});
  ~HttpTransport() override;

  // As the library's, with a backlog that holds a burst of connections: the
  // library's own five would make later clients wait a second to retry.
  bool listen_after_bind();

  // Stops accepting, closes waiting connections, cuts open ones and joins
  // every worker.
  void stop();

  // From a handler: the connection closes after this answer (a refused
  // request's unread body must not be taken for the next request).
  static void closeAfterThisAnswer();

 private:
  bool process_and_close_socket(socket_t sock) override;
  void dispatch(Connection connection);
  void answer(Connection connection);

  TransportLimits limits_;
  ConnectionWaiter waiter_;
  std::unique_ptr<httplib::ThreadPool> workers_;
  std::mutex activeMutex_;
  std::set<int> active_;
  std::atomic<bool> stopping_{false};
};

}  // namespace quillan::server
