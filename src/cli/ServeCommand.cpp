#include <arpa/inet.h>

#include <cmath>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"
#include "host/ReloadBudget.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "render/DeviceProfile.hpp"
#include "server/PortInUse.hpp"

namespace quillan::cli {
namespace {

struct ServeOptions {
  int port = 8080;
  std::string bind = "127.0.0.1";
  int budget = host::ReloadBudget::kDefaultLimit;
  double deadlineSeconds = 5;
  double memoryCeilingMegabytes = 30;
  std::string device = "393x852";
  double scale = 2;
};

void checkBind(const std::string& address) {
  in_addr v4{};
  in6_addr v6{};
  if (inet_pton(AF_INET, address.c_str(), &v4) != 1 && inet_pton(AF_INET6, address.c_str(), &v6) != 1) {
    throw hosting::badOption("--bind", "not an IP address", address, "e.g. 127.0.0.1");
  }
}

host::HostEnvironment pageSettings(const ServeOptions& options, const HostOptions& host, bool modeGiven) {
  host::HostEnvironment settings;
  settings.colorScheme = host.colorScheme;
  if (modeGiven) settings.renderingMode = host.renderingMode;
  settings.platformVersion = host.platformVersion;
  settings.locale = host.locale;
  settings.timeZone = host.timeZone;
  settings.layoutDirection = host.layoutDirection;
  settings.dynamicType = host.dynamicType;
  settings.device = hosting::deviceNamed(options.device).name;
  settings.scale = options.scale;
  settings.seed = host.seed;
  return settings;
}

// What the command has made the process's defaults, for keepers that start
// as a fresh image rather than inherit them.
worker::ProcessSettings keeperDefaults(const std::filesystem::path& container, const HostOptions& host) {
  worker::ProcessSettings defaults;
  defaults.groupContainer = container;
  defaults.appSupport = host.appSupport.value_or(platform::FileManager::applicationSupportBeside(container));
  defaults.timeZone = platform::TimeZone::current().identifier();
  defaults.locale = platform::Locale::current().identifier();
  return defaults;
}

server::ServerOptions serverOptions(const ServeOptions& options, const HostOptions& host, bool modeGiven) {
  checkBind(options.bind);
  server::ServerOptions server;
  server.bind = options.bind;
  server.port = options.port;
  const auto container = host.groupContainer.value_or(platform::FileManager::defaultGroupContainerDirectory());
  std::error_code error;
  if (!std::filesystem::is_directory(container, error)) {
    throw hosting::badOption("--group-container", "no such directory", container.string());
  }
  server.journal = container / "Quillan.sqlite";
  server.worker.deadline = std::chrono::milliseconds(std::llround(options.deadlineSeconds * 1000));
  server.worker.memoryCeilingBytes = std::llround(options.memoryCeilingMegabytes * 1024 * 1024);
  // The server grows as it serves; its workers come from this command's image
  // as it was started (also when the file has been replaced since), never
  // from the server itself.
  server.worker.keeperImage = "/proc/self/exe";
  server.worker.keeperDefaults = keeperDefaults(container, host);
  server.scheduler.reloadBudget = options.budget;
  server.settings = pageSettings(options, host, modeGiven);
  if (host.now) server.pinnedAt = platform::ISO8601::parse(*host.now);
  return server;
}

int serve(const ServeOptions& options, const HostOptions& host, bool modeGiven) {
  const bool v6 = options.bind.find(':') != std::string::npos;
  // A bad option is reported before a missing module is.
  const auto settings = serverOptions(options, host, modeGiven);
  try {
    servingModule().serveUntilStopped(settings, [&](int port) {
      std::cout << "serving http://" << (v6 ? "[" + options.bind + "]" : options.bind) << ":" << port << "/"
                << std::endl;
    });
  } catch (const server::PortInUse& error) {
    throw hosting::UsageError(std::string(error.what()) + "; choose another with --port, or 0 for a free one");
  }
  return 0;
}

}  // namespace

Run addServeCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "serve",
      "the live host: the widgets on a web page that follows the host's clock and the journal, with\n"
      "controls for the clock and the environment (the environment options are the page's defaults).\n"
      "Prints one line \"serving http://ADDRESS:PORT/\" and runs until SIGINT or SIGTERM. The extension\n"
      "runs in worker processes: an evaluation that stops, is killed, runs past the deadline or past\n"
      "the memory ceiling fails that widget only. The HTTP API is described in the README");
  auto options = std::make_shared<ServeOptions>();
  command->add_option("--port", options->port, "TCP port to listen on, 0 for a free one (default: 8080)")
      ->transform(wholeNumber())
      ->check(CLI::Range(0, 65535));
  command->add_option("--bind", options->bind, "the address to listen on (default: 127.0.0.1, this machine only)");
  command
      ->add_option("--budget", options->budget,
                   "policy reloads per widget in any rolling 24 h; over it a widget stays stale (default: 70)")
      ->transform(wholeNumber())
      ->check(CLI::Range(1, host::ReloadBudget::kMaxLimit));
  command
      ->add_option("--deadline", options->deadlineSeconds,
                   "seconds one evaluation may run before it is killed, 0.1 to 600 (default: 5; an\n"
                   "assumption: the phone documents no deadline, ours take milliseconds)")
      ->transform(decimalNumberFrom(0.1, 600));
  command
      ->add_option("--memory-ceiling", options->memoryCeilingMegabytes,
                   "peak resident memory of one evaluation in MB, 4 to 4096 (default: 30, as on the phone)")
      ->transform(decimalNumberFrom(4, 4096));
  command->add_option("--device", options->device, "the page's device profile for widget sizes (default: 393x852)");
  command->add_option("--scale", options->scale, "pixels per point of the page's pictures, 1 to 3 (default: 2)")
      ->transform(decimalNumberFrom(1, 3));
  return [command, options, &host, &app] {
    if (!command->parsed()) return -1;
    const bool modeGiven = app.get_option("--rendering-mode")->count() > 0;
    return serve(*options, host, modeGiven);
  };
}

}  // namespace quillan::cli
