#pragma once

#include <httplib.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "host/LiveHostFixture.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "server/Server.hpp"
#include "support/RawClient.hpp"

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

// The status of a raw answer ("HTTP/1.1 405 ..." -> 405), 0 if none came.
inline int statusOf(const std::string& answer) {
  return answer.rfind("HTTP/1.1 ", 0) == 0 ? std::atoi(answer.c_str() + 9) : 0;
}

}  // namespace quillan::testing
