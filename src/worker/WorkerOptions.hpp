#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "widgets/WidgetConfiguration.hpp"
#include "worker/Evaluation.hpp"

namespace quillan::worker {

// The limits each evaluation runs under, and the widgets the worker serves.
struct WorkerOptions {
  // An assumption: the phone documents no deadline for a provider; 5 s is far
  // beyond what ours take (milliseconds) and short enough for a live page.
  std::chrono::milliseconds deadline{5000};
  // Peak resident memory of the evaluating process, as the phone's widget
  // extensions are held to 30 MB. The child starts at the warm worker's
  // resident size (the shared libraries and ICU data it touched).
  std::int64_t memoryCeilingBytes = 30 * 1024 * 1024;
  // How often the child's peak memory is read while it runs. An allocation
  // between two readings is caught at the next one, or at the end from wait4.
  std::chrono::milliseconds memorySampleInterval{5};
  // The widgets the worker can evaluate, by kind. Empty means the bundle's five.
  std::vector<widgets::WidgetConfiguration> widgets;
  // An executable that becomes a keeper when run as `IMAGE --worker-keeper`
  // (the command; see KeeperImage.hpp). Set, every keeper is started from it
  // as a fresh image, so a keeper started after the host has grown, or after
  // every worker process was killed, is as small as the first; the widgets
  // are then the bundle's. Empty, keepers are forked from the host, which
  // suits a short-lived host or widgets only this process knows.
  std::filesystem::path keeperImage;
  // The process defaults a keeper started from keeperImage begins with: what
  // a forked one inherits from the host (group container, zone, locale).
  ProcessSettings keeperDefaults;
};

}  // namespace quillan::worker
