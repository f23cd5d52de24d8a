#pragma once

#include <CLI/CLI.hpp>

#include "cli/HostOptions.hpp"

namespace quillan::cli {

// Each subcommand declares its options on `app` and returns a function that
// runs it once the command line has been parsed (options applied).
using Run = std::function<int()>;

Run addListCommand(CLI::App& app);
Run addTimelineCommand(CLI::App& app);
Run addRenderCommand(CLI::App& app, const HostOptions& host);
Run addTapCommand(CLI::App& app, const HostOptions& host);
Run addSampleJournalCommand(CLI::App& app, HostOptions& host);
Run addDemoCommand(CLI::App& app, HostOptions& host);
Run addServeCommand(CLI::App& app, const HostOptions& host);
Run addSimulateCommand(CLI::App& app, const HostOptions& host);
Run addSnapshotCommand(CLI::App& app, const HostOptions& host);
Run addAuditCommand(CLI::App& app, const HostOptions& host);

}  // namespace quillan::cli
