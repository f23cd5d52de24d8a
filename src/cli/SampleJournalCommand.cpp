#include <iostream>

#include "cli/Commands.hpp"
#include "hosting/SampleJournalFiles.hpp"

namespace quillan::cli {

Run addSampleJournalCommand(CLI::App& app, HostOptions& host) {
  auto* command = app.add_subcommand(
      "sample-journal",
      "write a realistic journal, Quillan.sqlite, into --group-container (created if missing, never\n"
      "overwriting a journal): several years of Markdown entries, memories on today's date in earlier years,\n"
      "a streak of recent days, nothing yet today; relative to --now in --time-zone, reproducible with --seed");
  return [command, &host] {
    if (!command->parsed()) return -1;
    if (!host.groupContainer)
      throw hosting::UsageError("--group-container: sample-journal needs the folder to write into");
    const auto path = hosting::writeSampleJournal(*host.groupContainer, host.seed);
    std::cout << "wrote " << path.string() << "\n";
    return 0;
  };
}

}  // namespace quillan::cli
