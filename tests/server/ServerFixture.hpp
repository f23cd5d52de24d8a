#pragma once

#include <httplib.h>

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

}  // namespace quillan::testing
