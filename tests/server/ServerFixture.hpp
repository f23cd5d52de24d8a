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

#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "server/Server.hpp"

namespace quillan::testing {

inline constexpr const char* kServerNow = "2026-11-22T09:00:00+01:00";

// A temporary group container (with "Application Support" beside it, so no
// legacy move happens), made the process's default, removed at the end.
class ServerFolder {
 public:
  ServerFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "quillan-serve-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    std::filesystem::create_directories(root_ / "group");
    std::filesystem::create_directories(root_ / "Application Support");
    platform::FileManager::setGroupContainerDirectory(root_ / "group");
    platform::FileManager::setApplicationSupportDirectory(root_ / "Application Support");
  }
  ~ServerFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  ServerFolder(const ServerFolder&) = delete;
  ServerFolder& operator=(const ServerFolder&) = delete;

  std::filesystem::path journal() const { return root_ / "group" / "Quillan.sqlite"; }

 private:
  std::filesystem::path root_;
};

// Options for a server on a free port over `journal`, its clock pinned at
// kServerNow in Berlin. The deadline is generous: test processes run side by
// side on a busy machine, and a view that failed its deadline stays failed
// until the widget's next picture. Under the address sanitizer a child's
// shadow memory would pass the phone's ceiling, which is tested in the
// worker's suite.
inline server::ServerOptions serverOptions(const std::filesystem::path& journal) {
  server::ServerOptions options;
  options.journal = journal;
  options.pinnedAt = platform::ISO8601::parse(kServerNow);
  options.settings.timeZone = "Europe/Berlin";
  options.settings.locale = "en_US";
  options.worker.deadline = std::chrono::seconds(60);
#if defined(__SANITIZE_ADDRESS__)
  options.worker.memoryCeilingBytes = std::int64_t{1024} * 1024 * 1024;
#endif
  return options;
}

// Polls `ready` every 20 ms for at most `limit`.
inline bool eventually(const std::function<bool()>& ready, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (std::chrono::steady_clock::now() < end) {
    if (ready()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return ready();
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
