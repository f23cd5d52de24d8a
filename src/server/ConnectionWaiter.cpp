#include "server/ConnectionWaiter.hpp"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>

#include "server/BufferedRequest.hpp"

namespace quillan::server {
namespace {

constexpr std::size_t kReadChunk = 4096;

// A refusal before any worker has seen the request: one line, then the
// connection closes.
void refuse(Connection& connection, int status, const char* reason, const std::string& message) {
  const std::string body = R"({"error":")" + message + R"("})";
  const std::string response = "HTTP/1.1 " + std::to_string(status) + " " + reason +
                               "\r\nContent-Type: application/json\r\nConnection: close\r\nContent-Length: " +
                               std::to_string(body.size()) + "\r\n\r\n" + body;
  (void)send(connection.socket, response.data(), response.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  closeConnection(connection);
}

}  // namespace

ConnectionWaiter::ConnectionWaiter(Limits limits, Ready ready) : limits_(limits), ready_(std::move(ready)) {
  wakeFd_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (wakeFd_ < 0) throw std::runtime_error("cannot create the connection waiter's event");
  thread_ = std::thread([this] { run(); });
}

ConnectionWaiter::~ConnectionWaiter() {
  stop();
  close(wakeFd_);
}

void ConnectionWaiter::add(Connection connection) {
  {
    std::lock_guard lock(mutex_);
    if (!stopping_) {
      incoming_.push_back(std::move(connection));
      connection.socket = -1;
    }
  }
  closeConnection(connection);
  wake();
}

void ConnectionWaiter::stop() {
  {
    std::lock_guard lock(mutex_);
    if (stopping_) return;
    stopping_ = true;
  }
  wake();
  if (thread_.joinable()) thread_.join();
  for (auto& waiting : waiting_) closeConnection(waiting.connection);
  waiting_.clear();
  for (auto& connection : incoming_) closeConnection(connection);
  incoming_.clear();
}

void ConnectionWaiter::wake() {
  const std::uint64_t one = 1;
  (void)!::write(wakeFd_, &one, sizeof one);
}

void ConnectionWaiter::run() {
  std::vector<pollfd> watched;
  std::vector<std::list<Waiting>::iterator> owners;
  for (;;) {
    {
      std::lock_guard lock(mutex_);
      if (stopping_) return;
    }
    admitIncoming();
    watched.assign(1, pollfd{wakeFd_, POLLIN, 0});
    owners.clear();
    for (auto at = waiting_.begin(); at != waiting_.end(); ++at) {
      watched.push_back({at->connection.socket, POLLIN | POLLRDHUP, 0});
      owners.push_back(at);
    }
    if (poll(watched.data(), watched.size(), pollTimeout()) < 0 && errno != EINTR) return;
    std::uint64_t drained = 0;
    (void)!::read(wakeFd_, &drained, sizeof drained);
    for (std::size_t index = 0; index < owners.size(); ++index) {
      if (watched[index + 1].revents == 0) continue;
      auto at = owners[index];
      if (readFrom(*at)) {
        handOverIfComplete(at);
      } else {
        closeConnection(at->connection);
        waiting_.erase(at);
      }
    }
    expire(std::chrono::steady_clock::now());
  }
}

void ConnectionWaiter::admitIncoming() {
  std::vector<Connection> arrived;
  {
    std::lock_guard lock(mutex_);
    arrived.swap(incoming_);
  }
  for (auto& connection : arrived) admit(std::move(connection));
}

void ConnectionWaiter::admit(Connection connection) {
  const auto client = connection.client;
  const auto now = std::chrono::steady_clock::now();
  waiting_.push_back({std::move(connection), now, now + limits_.requestDeadline});
  auto last = std::prev(waiting_.end());
  // The request usually came with the connection, and a kept-alive one may
  // already hold its next: either is answered before any limit is counted.
  if (requestArrival(last->connection.buffered) == RequestArrival::incomplete && !readFrom(*last)) {
    closeConnection(last->connection);
    waiting_.erase(last);
    return;
  }
  handOverIfComplete(last);
  evictBeyondLimits(client, now);
}

void ConnectionWaiter::evictBeyondLimits(const std::string& client, std::chrono::steady_clock::time_point now) {
  const auto sameClient = [&](const Waiting& waiting) { return waiting.connection.client == client; };
  if (static_cast<std::size_t>(std::count_if(waiting_.begin(), waiting_.end(), sameClient)) > limits_.perClient) {
    auto oldest = std::find_if(waiting_.begin(), waiting_.end(), sameClient);
    if (now - oldest->since >= limits_.evictionGrace) {
      closeConnection(oldest->connection);
      waiting_.erase(oldest);
    }
  }
  if (waiting_.size() > limits_.overall) {
    closeConnection(waiting_.front().connection);
    waiting_.pop_front();
  }
}

bool ConnectionWaiter::readFrom(Waiting& waiting) {
  char chunk[kReadChunk];
  const auto received = recv(waiting.connection.socket, chunk, sizeof chunk, MSG_DONTWAIT);
  if (received < 0) return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
  if (received == 0) return false;
  waiting.connection.buffered.append(chunk, static_cast<std::size_t>(received));
  return true;
}

void ConnectionWaiter::handOverIfComplete(std::list<Waiting>::iterator& at) {
  const auto arrival = requestArrival(at->connection.buffered);
  if (arrival == RequestArrival::incomplete) return;
  auto connection = std::move(at->connection);
  waiting_.erase(at);
  if (arrival == RequestArrival::tooLarge) {
    refuse(connection, 431, "Request Header Fields Too Large", "request line and headers larger than 8 KiB");
  } else {
    ready_(std::move(connection));
  }
}

void ConnectionWaiter::expire(std::chrono::steady_clock::time_point now) {
  while (!waiting_.empty() && waiting_.front().deadline <= now) {
    auto& connection = waiting_.front().connection;
    // An idle kept-alive connection just closes; a started request hears why.
    if (connection.buffered.empty()) closeConnection(connection);
    else refuse(connection, 408, "Request Timeout", "the request did not arrive in time");
    waiting_.pop_front();
  }
}

int ConnectionWaiter::pollTimeout() const {
  if (waiting_.empty()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(waiting_.front().deadline -
                                                                 std::chrono::steady_clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

}  // namespace quillan::server
