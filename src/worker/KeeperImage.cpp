#include "worker/KeeperImage.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "bundle/TimelineWidgetBundle.hpp"
#include "platform/FileManager.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/MessageFraming.hpp"
#include "worker/WorkerKeeper.hpp"

extern char** environ;

namespace quillan::worker {
namespace {

using Json = nlohmann::json;

constexpr int kImageControlFd = 3;

Json handshake(const WorkerOptions& options) {
  return {{"deadline", options.deadline.count()},
          {"memoryCeiling", options.memoryCeilingBytes},
          {"sampleInterval", options.memorySampleInterval.count()},
          {"defaults", toJson(options.keeperDefaults)}};
}

WorkerOptions optionsFrom(const Json& json) {
  WorkerOptions options;
  options.deadline = std::chrono::milliseconds(json.at("deadline").get<std::int64_t>());
  options.memoryCeilingBytes = json.at("memoryCeiling").get<std::int64_t>();
  options.memorySampleInterval = std::chrono::milliseconds(json.at("sampleInterval").get<std::int64_t>());
  options.keeperDefaults = processSettingsFromJson(json.at("defaults"));
  options.widgets = bundle::TimelineWidgetBundle::body();
  return options;
}

// What a forked keeper would have inherited from the host.
void applyDefaults(const ProcessSettings& defaults) {
  if (defaults.groupContainer) platform::FileManager::setGroupContainerDirectory(*defaults.groupContainer);
  if (defaults.appSupport) platform::FileManager::setApplicationSupportDirectory(*defaults.appSupport);
  if (defaults.timeZone) {
    if (const auto zone = platform::TimeZone::named(*defaults.timeZone)) platform::TimeZone::setCurrent(*zone);
  }
  if (defaults.locale) {
    if (const auto locale = platform::Locale::named(*defaults.locale)) platform::Locale::setCurrent(*locale);
  }
}

// Someone ran the command with the keeper's argument: one line, and no keeper.
[[noreturn]] void refuseByHand() {
  const char message[] =
      "quillan-widgets: --worker-keeper is started by `serve` over its control socket, not by hand\n";
  [[maybe_unused]] const auto written = write(STDERR_FILENO, message, sizeof message - 1);
  _exit(2);
}

std::runtime_error spawnError(const WorkerOptions& options, int error) {
  return std::runtime_error("worker: could not start the keeper " + options.keeperImage.string() + ": " +
                            std::strerror(error));
}

}  // namespace

KeeperProcess spawnKeeperImage(const WorkerOptions& options) {
  int pair[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) throw spawnError(options, errno);
  // Above the standard streams and the keeper's own descriptor, so that the
  // dup2 below always makes a new descriptor, which drops close-on-exec.
  const int child = fcntl(pair[1], F_DUPFD_CLOEXEC, kImageControlFd + 1);
  close(pair[1]);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, child, kImageControlFd);
  const std::string image = options.keeperImage.string();
  char* arguments[] = {const_cast<char*>(image.c_str()), const_cast<char*>(kKeeperArgument), nullptr};
  pid_t pid = 0;
  const int failed = child < 0 ? errno : posix_spawn(&pid, image.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (child >= 0) close(child);
  if (failed != 0) {
    close(pair[0]);
    throw spawnError(options, failed);
  }
  // A keeper that stops before reading this is seen as gone at the first request.
  writeMessage(pair[0], handshake(options));
  return {pid, pair[0]};
}

void runKeeperImage() {
  const auto message = readMessage(kImageControlFd);
  WorkerOptions options;
  try {
    if (!std::holds_alternative<Json>(message)) throw std::runtime_error("no limits");
    options = optionsFrom(std::get<Json>(message));
  } catch (const std::exception&) {
    refuseByHand();
  }
  applyDefaults(options.keeperDefaults);
  runWorkerKeeper(kImageControlFd, options);
}

}  // namespace quillan::worker
