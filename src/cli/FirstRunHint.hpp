#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/HostOptions.hpp"

namespace quillan::cli {

// Off the phone there is no app to have made the group container, so a first
// run finds none and the extension stops without a word, as it would on the
// phone. Just before that stop the command says where it looked and what to
// do: this line, or nothing when the folder was named (a named folder that is
// missing is refused as a bad option value before anything runs).
std::optional<std::string> missingJournalHint(const HostOptions& host);

// The environment options, as a footer for every subcommand's --help.
std::string environmentHelp(const CLI::App& app);

}  // namespace quillan::cli
