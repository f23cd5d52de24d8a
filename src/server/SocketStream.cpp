#include "server/SocketStream.hpp"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace quillan::server {
namespace {

using SocketName = int (*)(int, sockaddr*, socklen_t*);

void addressOf(int socket, SocketName name, std::string& ip, int& port) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  ip.clear();
  port = -1;
  if (name(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) return;
  char text[INET6_ADDRSTRLEN] = {};
  if (address.ss_family == AF_INET) {
    const auto* v4 = reinterpret_cast<const sockaddr_in*>(&address);
    inet_ntop(AF_INET, &v4->sin_addr, text, sizeof text);
    port = ntohs(v4->sin_port);
  } else if (address.ss_family == AF_INET6) {
    const auto* v6 = reinterpret_cast<const sockaddr_in6*>(&address);
    inet_ntop(AF_INET6, &v6->sin6_addr, text, sizeof text);
    port = ntohs(v6->sin6_port);
  }
  ip = text;
}

}  // namespace

SocketStream::SocketStream(Connection& connection, std::chrono::steady_clock::time_point readDeadline)
    : connection_(connection), readDeadline_(readDeadline) {}

bool SocketStream::waitReadable() const {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(readDeadline_ -
                                                                            std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd watched{connection_.socket, POLLIN, 0};
    const int ready = poll(&watched, 1, static_cast<int>(left.count()));
    if (ready > 0) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
}

bool SocketStream::is_readable() const { return !connection_.buffered.empty() || waitReadable(); }

bool SocketStream::is_writable() const {
  pollfd watched{connection_.socket, POLLOUT | POLLRDHUP, 0};
  if (poll(&watched, 1, 0) < 0) return false;
  return (watched.revents & (POLLERR | POLLHUP | POLLRDHUP | POLLNVAL)) == 0;
}

ssize_t SocketStream::read(char* data, size_t size) {
  auto& buffered = connection_.buffered;
  if (!buffered.empty()) {
    const auto taken = std::min(size, buffered.size());
    std::copy_n(buffered.begin(), taken, data);
    buffered.erase(0, taken);
    return static_cast<ssize_t>(taken);
  }
  if (!waitReadable()) return -1;
  ssize_t received = 0;
  do {
    received = recv(connection_.socket, data, size, 0);
  } while (received < 0 && errno == EINTR);
  return received;
}

// The socket's send timeout (set when it was accepted) bounds each send.
ssize_t SocketStream::write(const char* data, size_t size) {
  size_t sent = 0;
  while (sent < size) {
    const auto written = send(connection_.socket, data + sent, size - sent, MSG_NOSIGNAL);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return -1;
    sent += static_cast<size_t>(written);
  }
  return static_cast<ssize_t>(sent);
}

void SocketStream::get_remote_ip_and_port(std::string& ip, int& port) const {
  addressOf(connection_.socket, getpeername, ip, port);
}

void SocketStream::get_local_ip_and_port(std::string& ip, int& port) const {
  addressOf(connection_.socket, getsockname, ip, port);
}

}  // namespace quillan::server
