#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/HostOptions.hpp"

namespace quillan::cli {

// Off the phone there is no app to have made the group container, so a first
// run finds none and the extension stops without a word, as it would on the
// phone. Before that, the command says where it looked and what to do: the
// line to print, or nothing when a journal can be read or none is needed.
std::optional<std::string> missingJournalHint(const CLI::App& app, const HostOptions& host);

// The environment options, as a footer for every subcommand's --help.
std::string environmentHelp(const CLI::App& app);

}  // namespace quillan::cli
