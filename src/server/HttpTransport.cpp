#include "server/HttpTransport.hpp"

#include <arpa/inet.h>
#include <sys/socket.h>

#include "server/SocketStream.hpp"

namespace quillan::server {
namespace {

thread_local bool closeAfterAnswer = false;

std::string peerAddress(int socket) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  if (getpeername(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) return {};
  char text[INET6_ADDRSTRLEN] = {};
  if (address.ss_family == AF_INET) {
    inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in*>(&address)->sin_addr, text, sizeof text);
  } else if (address.ss_family == AF_INET6) {
    inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6*>(&address)->sin6_addr, text, sizeof text);
  }
  return text;
}

}  // namespace

HttpTransport::HttpTransport(TransportLimits limits)
    : limits_(limits),
      waiter_(limits.waiting, [this](Connection connection) { dispatch(std::move(connection)); }),
      workers_(std::make_unique<httplib::ThreadPool>(static_cast<std::size_t>(limits.workers))) {
  // Handing a socket to the waiter is quick: one thread accepts and hands over.
  new_task_queue = [] { return new httplib::ThreadPool(1); };
  set_keep_alive_max_count(static_cast<std::size_t>(limits.requestsPerConnection));
  set_keep_alive_timeout(std::chrono::duration_cast<std::chrono::seconds>(limits.waiting.requestDeadline).count());
  set_logger([](const httplib::Request&, const httplib::Response& response) {
    if (response.get_header_value("Connection") == "close") closeAfterAnswer = true;
  });
}

HttpTransport::~HttpTransport() { stop(); }

bool HttpTransport::listen_after_bind() {
  // Listening again on a listening socket only changes its backlog.
  ::listen(svr_sock_, limits_.backlog);
  return httplib::Server::listen_after_bind();
}

void HttpTransport::stop() {
  if (stopping_.exchange(true)) return;
  httplib::Server::stop();
  waiter_.stop();
  {
    std::lock_guard lock(activeMutex_);
    for (const int socket : active_) shutdown(socket, SHUT_RDWR);
  }
  workers_->shutdown();
}

void HttpTransport::closeAfterThisAnswer() { closeAfterAnswer = true; }

bool HttpTransport::process_and_close_socket(socket_t sock) {
  waiter_.add(Connection{sock, peerAddress(sock), {}, 0});
  return true;
}

void HttpTransport::dispatch(Connection connection) {
  if (stopping_) return closeConnection(connection);
  auto shared = std::make_shared<Connection>(std::move(connection));
  workers_->enqueue([this, shared] { answer(std::move(*shared)); });
}

void HttpTransport::answer(Connection connection) {
  {
    std::lock_guard lock(activeMutex_);
    if (stopping_) return closeConnection(connection);
    active_.insert(connection.socket);
  }
  closeAfterAnswer = false;
  const bool last = ++connection.answered >= limits_.requestsPerConnection;
  bool clientCloses = false;
  SocketStream stream(connection, std::chrono::steady_clock::now() + limits_.readDeadline);
  const bool answered = process_request(stream, last, clientCloses, nullptr);
  {
    std::lock_guard lock(activeMutex_);
    active_.erase(connection.socket);
  }
  if (closeAfterAnswer) return closeAfterDraining(connection);
  if (!answered || last || clientCloses || stopping_) return closeConnection(connection);
  waiter_.add(std::move(connection));
}

}  // namespace quillan::server
