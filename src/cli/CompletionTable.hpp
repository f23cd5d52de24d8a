#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace quillan::cli {

// The one argument that makes the command print its completion table and exit;
// the build writes the bash completion from it, so completion offers exactly
// what parsing accepts.
inline constexpr std::string_view kCompletionTableArgument = "--completion-table";

// One line per command, the top-level one first, then each subcommand depth first:
//   <path>:<its subcommands>:<its options>
// with the path's names (empty for the top level) and both lists separated by
// spaces; --help, hidden subcommands and hidden options are left out.
void writeCompletionTable(const CLI::App& app, std::ostream& out);

// The app's subcommands as a sentence: "a, b or c".
std::string subcommandSentence(const CLI::App& app);

}  // namespace quillan::cli
