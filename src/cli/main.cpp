// quillan-widgets: the widget host on the command line.

#include <filesystem>
#include <iostream>

#include <CLI/CLI.hpp>

#include "cli/Commands.hpp"
#include "cli/CompletionTable.hpp"
#include "cli/FirstRunHint.hpp"
#include "cli/HostOptions.hpp"
#include "hosting/QuotedValue.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/Fatal.hpp"
#include "views/ViewTreeJson.hpp"
#include "worker/KeeperImage.hpp"

namespace {

// Messages may echo values, and values may hold anything: every line written is one line.
void report(std::string_view message) {
  std::cerr << "quillan-widgets: " << quillan::hosting::singleLine(message) << "\n";
}

constexpr const char* kDescription =
    "The Quillan journal's widgets, off the phone: timelines, view trees, drawings and taps.\n"
    "Reads the journal Quillan.sqlite in the app group's container (never writes it).\n\n"
    "The extension's own log lines (a note whose text is not Markdown, a failed move of a legacy\n"
    "journal) go to standard error, as the phone sends them to the system log; standard output\n"
    "carries only the command's result. A bad option value prints one line naming the option and exits\n"
    "with status 2; numbers are decimal (\"2.5\", \"-3\"; not hexadecimal, exponents, inf or nan).\n"
    "What the extension treats as impossible stops it with \"<source>: Fatal error: <message>\".";

}  // namespace

int main(int argc, char** argv) {
  using namespace quillan;
  // The live host starts its worker keepers from this image, fresh and small.
  if (argc == 2 && std::string_view(argv[1]) == worker::kKeeperArgument) worker::runKeeperImage();
  platform::ExtensionLog::setSink([](std::string_view line) { std::cerr << line << "\n"; });

  CLI::App app(kDescription, "quillan-widgets");
  app.require_subcommand(1);
  app.fallthrough();
  cli::HostOptions host;
  host.addTo(app);

  const std::vector<cli::Run> commands = {
      cli::addListCommand(app),
      cli::addTimelineCommand(app),
      cli::addRenderCommand(app, host),
      cli::addTapCommand(app, host),
      cli::addSampleJournalCommand(app, host),
      cli::addDemoCommand(app, host),
      cli::addServeCommand(app, host),
      cli::addSimulateCommand(app, host),
      cli::addSnapshotCommand(app, host),
      cli::addAuditCommand(app, host),
  };
  const auto environment = cli::environmentHelp(app);
  for (CLI::App* subcommand : app.get_subcommands({})) {
    subcommand->footer(environment);
    for (CLI::App* nested : subcommand->get_subcommands({})) nested->footer(environment);
  }
  // The build writes the man page and the bash completion from this table of what was just declared.
  if (argc == 2 && std::string_view(argv[1]) == cli::kCompletionTableArgument) {
    cli::writeCompletionTable(app, std::cout);
    return 0;
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    // An unknown subcommand is left over rather than reported by name.
    const auto leftover = app.remaining();
    if (!leftover.empty() && app.get_subcommands().empty()) {
      report(hosting::badValue("unknown subcommand", leftover.front(),
                               "expected " + cli::subcommandSentence(app) + "; see --help"));
      return 2;
    }
    report(error.what());
    return 2;
  }

  try {
    // sample-journal makes the container it is asked to fill.
    if (app.got_subcommand("sample-journal") && host.groupContainer) {
      std::filesystem::create_directories(*host.groupContainer);
    }
    host.apply();
    static const auto hint = cli::missingJournalHint(host);
    platform::setSilentStopNotice([] {
      if (hint) report(*hint);
    });
    for (const auto& command : commands) {
      if (const int status = command(); status >= 0) return status;
    }
  } catch (const hosting::UsageError& error) {
    report(error.what());
    return 2;
  } catch (const std::exception& error) {
    report(error.what());
    return 1;
  }
  return 0;
}
