#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/SchedulerOptions.hpp"
#include "platform/Date.hpp"
#include "server/PageSettings.hpp"
#include "worker/WorkerOptions.hpp"

namespace quillan::server {

struct ServerOptions {
  // Only this address is listened on; the page is meant for the machine it runs on.
  std::string bind = "127.0.0.1";
  int port = 0;  // 0: a free port
  // The journal the watcher follows (the group container's Quillan.sqlite).
  std::filesystem::path journal;
  worker::WorkerOptions worker;
  host::SchedulerOptions scheduler;
  host::HostEnvironment settings;
  // Set: the host's clock starts pinned here; else it is live.
  std::optional<platform::Date> pinnedAt;
  // Workers building views for the page, beside the one asking for timelines.
  int viewWorkers = 2;
};

}  // namespace quillan::server
