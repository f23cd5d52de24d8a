#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

#include "server/Connection.hpp"

namespace quillan::server {

// Holds connections, on one thread and without a worker each, until a whole
// request has arrived on them; then hands each to `ready`. A client that
// sends slowly, or opens connections and sends nothing, so costs no worker,
// and is cut off when its request is not complete within the deadline,
// however steadily its bytes trickle in.
class ConnectionWaiter {
 public:
  struct Limits {
    // From the moment a connection waits (accepted, or its last answer sent).
    std::chrono::milliseconds requestDeadline{5000};
    // A client past this many waiting connections loses its oldest one, so
    // it cannot crowd others out however many it opens; a connection waiting
    // less than the grace is kept, as a burst of quick requests would be.
    std::size_t perClient = 64;
    std::size_t overall = 512;
    std::chrono::milliseconds evictionGrace{1000};
  };
  using Ready = std::function<void(Connection)>;

  ConnectionWaiter(Limits limits, Ready ready);
  ~ConnectionWaiter();
  ConnectionWaiter(const ConnectionWaiter&) = delete;
  ConnectionWaiter& operator=(const ConnectionWaiter&) = delete;

  // Takes the connection over (any thread); closes it once stopped.
  void add(Connection connection);
  // Closes every waiting connection and joins the thread.
  void stop();

 private:
  struct Waiting {
    Connection connection;
    std::chrono::steady_clock::time_point since;
    std::chrono::steady_clock::time_point deadline;
  };

  void run();
  void admitIncoming();
  void admit(Connection connection);
  void evictBeyondLimits(const std::string& client, std::chrono::steady_clock::time_point now);
  bool readFrom(Waiting& waiting);
  void expire(std::chrono::steady_clock::time_point now);
  void handOverIfComplete(std::list<Waiting>::iterator& at);
  int pollTimeout() const;
  void wake();

  Limits limits_;
  Ready ready_;
  int wakeFd_ = -1;
  std::mutex mutex_;
  std::vector<Connection> incoming_;
  bool stopping_ = false;
  std::list<Waiting> waiting_;  // oldest first; the thread's own
  std::thread thread_;
};

}  // namespace quillan::server
