#pragma once

#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <nlohmann/json.hpp>

#include "host/LiveHostFixture.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "server/Server.hpp"

namespace quillan::testing {

inline constexpr const char* kServerNow = kHostNow;

using ServerFolder = HostFolder;

// Options for a server on a free port over `journal`, its clock pinned at
// kServerNow, with the live host's test environment and workers.
inline server::ServerOptions serverOptions(const std::filesystem::path& journal) {
  server::ServerOptions options;
  options.journal = journal;
  options.pinnedAt = platform::ISO8601::parse(kServerNow);
  options.settings = hostEnvironment();
  options.worker = hostWorkerOptions();
  return options;
}

inline std::unique_ptr<httplib::Client> clientOf(int port) {
  auto client = std::make_unique<httplib::Client>("127.0.0.1", port);
  client->set_read_timeout(60, 0);
  client->set_connection_timeout(30, 0);
  return client;
}

inline nlohmann::json jsonOf(const httplib::Result& result) {
  if (!result) return nullptr;
  return nlohmann::json::parse(result->body, nullptr, false);
}

// The widgets once all five have had their first timeline asked.
inline nlohmann::json placedWidgets(httplib::Client& client) {
  nlohmann::json widgets;
  const auto answered = [&] {
    for (const auto& widget : widgets["widgets"]) {
      if (widget["state"] == "loading") return false;
    }
    return true;
  };
  eventually(
      [&] {
        widgets = jsonOf(client.Get("/api/widgets"));
        return widgets.is_object() && widgets["widgets"].size() == 5 && answered();
      },
      std::chrono::seconds(60));
  return widgets;
}

inline nlohmann::json widgetOf(const nlohmann::json& widgets, const std::string& kind) {
  for (const auto& widget : widgets["widgets"]) {
    if (widget["kind"] == kind) return widget;
  }
  return nullptr;
}

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

// The status of a raw answer ("HTTP/1.1 405 ..." -> 405), 0 if none came.
inline int statusOf(const std::string& answer) {
  return answer.rfind("HTTP/1.1 ", 0) == 0 ? std::atoi(answer.c_str() + 9) : 0;
}

}  // namespace quillan::testing
