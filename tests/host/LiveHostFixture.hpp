#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/HostEnvironment.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "support/AnsweringWorkerOptions.hpp"
#include "support/Eventually.hpp"
#include "support/TemporaryFolder.hpp"
#include "worker/WorkerOptions.hpp"

namespace quillan::testing {

inline constexpr const char* kHostNow = "2026-11-22T09:00:00+01:00";

// A temporary group container (with "Application Support" beside it, so no
// legacy move happens), made the process's default, removed at the end.
class HostFolder {
 public:
  HostFolder() {
    std::filesystem::create_directories(root_ / "group");
    std::filesystem::create_directories(root_ / "Application Support");
    platform::FileManager::setGroupContainerDirectory(root_ / "group");
    platform::FileManager::setApplicationSupportDirectory(root_ / "Application Support");
  }
  std::filesystem::path journal() const { return root_ / "group" / "Quillan.sqlite"; }

 private:
  TemporaryFolder root_{"quillan-host"};
};

// The environment of a live host over a test journal: Berlin, in English.
inline host::HostEnvironment hostEnvironment() {
  host::HostEnvironment environment;
  environment.timeZone = "Europe/Berlin";
  environment.locale = "en_US";
  return environment;
}

// Workers for a live host in a test (see answeringOptions()). The deadline
// is generous: test processes run side by side on a busy machine, and a view
// that failed its deadline stays failed until the widget's next picture.
inline worker::WorkerOptions hostWorkerOptions() {
  auto options = answeringOptions();
  options.deadline = std::chrono::seconds(60);
  return options;
}

}  // namespace quillan::testing
