#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>

namespace quillan::testing {

// A client socket that sends exactly the bytes it is given, for requests no
// well-behaved client library would send.
class RawClient {
 public:
  explicit RawClient(int port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    connected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~RawClient() { close(socket_); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  bool send(const std::string& text) {
    return connected_ && ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
  }
  // What arrives until the server closes, `limit` passes or `until` arrives.
  std::string receive(std::chrono::milliseconds limit = std::chrono::seconds(30), const std::string& until = {}) {
    std::string text;
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
      pollfd watched{socket_, POLLIN, 0};
      if (left.count() <= 0 || poll(&watched, 1, static_cast<int>(left.count())) <= 0) return text;
      char chunk[4096];
      const auto received = recv(socket_, chunk, sizeof chunk, 0);
      if (received <= 0) return text;
      text.append(chunk, static_cast<std::size_t>(received));
      if (!until.empty() && text.find(until) != std::string::npos) return text;
    }
  }
  // Whether the server has closed the connection (reading what it sent last).
  bool closedByServer() {
    pollfd watched{socket_, POLLIN, 0};
    if (poll(&watched, 1, 0) <= 0) return false;
    char chunk[4096];
    ssize_t received = 0;
    while ((received = recv(socket_, chunk, sizeof chunk, MSG_DONTWAIT)) > 0) {
    }
    return received == 0 || (errno != EAGAIN && errno != EWOULDBLOCK);
  }

 private:
  int socket_;
  bool connected_ = false;
};

}  // namespace quillan::testing
