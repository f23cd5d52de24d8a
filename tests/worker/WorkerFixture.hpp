#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "bundle/TimelineWidgetBundle.hpp"
#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "support/AnsweringWorkerOptions.hpp"
#include "support/TemporaryFolder.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::testing {

// A temporary folder holding group containers (each with an empty
// "Application Support" beside it, so no legacy move happens), removed at the end.
class JournalFolders {
 public:
  // Settings that point an evaluation at the group container `name`.
  worker::ProcessSettings settings(const std::string& name, const std::string& zone = "Europe/Berlin") const {
    worker::ProcessSettings settings;
    settings.groupContainer = root_.path() / name / "group";
    settings.appSupport = root_.path() / name / "Application Support";
    settings.timeZone = zone;
    settings.locale = "en_US";
    settings.seed = 7;
    return settings;
  }
  std::filesystem::path makeContainer(const std::string& name) const {
    std::filesystem::create_directories(root_.path() / name / "group");
    std::filesystem::create_directories(root_.path() / name / "Application Support");
    return root_.path() / name / "group";
  }

 private:
  TemporaryFolder root_{"quillan-worker"};
};

inline platform::Date at(const std::string& iso) { return *platform::ISO8601::parse(iso); }

// The view of `kind`'s first entry at `now`, as a host draws it after placing
// the widget in its first family: the failure of the timeline or of the view.
inline worker::Evaluation<std::string> firstView(worker::WidgetWorker& worker, const std::string& kind,
                                                 platform::Date now, const worker::ProcessSettings& settings,
                                                 views::Environment environment = {}) {
  const auto answer = worker.timeline({kind, now, widgets::TimelineRequest::timeline, settings});
  if (!answer.value()) return {*answer.failure(), answer.log, answer.cost};
  environment.family = bundle::TimelineWidgetBundle::widget(kind)->supportedFamilies.front();
  return worker.view({kind, answer.value()->entryDates.front(), now, environment, settings});
}

// Touches every page of a fresh block of `bytes`, so it counts as resident.
inline std::unique_ptr<char[]> residentBlock(std::size_t bytes) {
  auto block = std::make_unique_for_overwrite<char[]>(bytes);
  auto* pages = static_cast<volatile char*>(block.get());
  for (std::size_t offset = 0; offset < bytes; offset += 4096) pages[offset] = 1;
  return block;
}

// Waits (at most 10 s) until the process `pid` no longer exists.
inline bool waitUntilGone(pid_t pid) {
  for (int attempt = 0; attempt < 1000; ++attempt) {
    if (kill(pid, 0) != 0 && errno == ESRCH) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace quillan::testing
