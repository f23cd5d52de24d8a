#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>

#include "support/RunCommand.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
using testing::runProgram;
using Words = std::vector<std::string>;

// What `quillan-widgets <path> --help` lists: the nested subcommands, and every option (environment ones
// included) by its long name, with whether its line shows a value it takes ("TEXT", "INT:...").
struct Help {
  Words subcommands;
  std::map<std::string, bool> options;
};

Help helpOf(const Words& path) {
  Words arguments = path;
  arguments.push_back("--help");
  const auto result = runCommand(arguments);
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  static const std::regex optionLine(R"(^  (?:-\w,)?(--[\w-]+)( [A-Z])?)");
  static const std::regex subcommandLine(R"(^  ([a-z][\w-]*)  )");
  Help help;
  std::istringstream lines(result.out);
  bool inSubcommands = false;
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (!line.starts_with(" ") && line.ends_with(":")) inSubcommands = line == "Subcommands:";
    if (inSubcommands && std::regex_search(line, match, subcommandLine)) help.subcommands.push_back(match[1]);
    if (std::regex_search(line, match, optionLine)) help.options[match[1]] = match[2].matched;
  }
  return help;
}

// The words bash offers after `quillan-widgets <words> <cur>`, with the two helpers of the
// bash-completion package the script calls stood in for: no file names are offered.
std::set<std::string> completions(const Words& words, const std::string& cur = "") {
  const std::string script = R"(
    _init_completion() {
      cur="${COMP_WORDS[COMP_CWORD]}"; prev="${COMP_WORDS[COMP_CWORD-1]}"; words=("${COMP_WORDS[@]}"); cword=$COMP_CWORD
    }
    _filedir() { :; }
    source "$1"; shift
    COMP_WORDS=(quillan-widgets "$@"); COMP_CWORD=$(( ${#COMP_WORDS[@]} - 1 ))
    _quillan_widgets
    printf '%s\n' "${COMPREPLY[@]}")";
  Words arguments = {"-c", script, "bash", QUILLAN_BASH_COMPLETION_PATH};
  arguments.insert(arguments.end(), words.begin(), words.end());
  arguments.push_back(cur);
  const auto result = runProgram("/bin/bash", arguments);
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  std::set<std::string> offered;
  std::istringstream lines(result.out);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty()) offered.insert(line);
  }
  return offered;
}

// Every command --help reaches, the top-level one first, each with its help.
std::vector<std::pair<Words, Help>> everyCommand() {
  std::vector<std::pair<Words, Help>> commands = {{{}, helpOf({})}};
  for (std::size_t index = 0; index < commands.size(); ++index) {
    const auto [path, help] = commands[index];
    for (const auto& subcommand : help.subcommands) {
      Words nested = path;
      nested.push_back(subcommand);
      commands.emplace_back(nested, helpOf(nested));
    }
  }
  return commands;
}

TEST(Completion, EveryHelpListsTheEnvironmentOptionsAndCompletionOffersWhatHelpListsAndTheirValues) {
  const auto commands = everyCommand();
  ASSERT_GT(commands.size(), 1u) << "--help lists no subcommand";
  // An unknown subcommand is answered with the same list.
  const auto unknown = runCommand({"bogus"});
  for (const auto& subcommand : commands.front().second.subcommands) {
    EXPECT_TRUE(std::regex_search(unknown.err, std::regex("[ ,]" + subcommand + "[ ,;]"))) << unknown.err;
  }
  for (const auto& [path, help] : commands) {
    for (const auto* environment :
         {"--group-container", "--app-support", "--now", "--time-zone", "--locale", "--color-scheme",
          "--rendering-mode", "--platform-version", "--layout-direction", "--dynamic-type", "--seed"}) {
      EXPECT_TRUE(help.options.contains(environment))
          << ::testing::PrintToString(path) << " --help does not list " << environment;
    }
    const auto offered = completions(path);
    for (const auto& subcommand : help.subcommands) {
      EXPECT_TRUE(offered.contains(subcommand))
          << ::testing::PrintToString(path) << " does not complete " << subcommand;
    }
    for (const auto& [option, takesValue] : help.options) {
      EXPECT_TRUE(offered.contains(option)) << ::testing::PrintToString(path) << " does not complete " << option;
      if (!takesValue) continue;
      // After an option that takes a value, values are offered, not options.
      Words words = path;
      words.push_back(option);
      for (const auto& word : completions(words))
        EXPECT_NE(word.front(), '-') << ::testing::PrintToString(words) << " offers " << word;
    }
  }
}

TEST(Completion, OffersEveryKindTheBundleLists) {
  const auto bundle = nlohmann::json::parse(runCommand({"list", "--json"}).out);
  ASSERT_FALSE(bundle.empty());
  for (const Words& words : {Words{"render", "--kind"}, Words{"--now", "x", "tap", "--kind"}}) {
    const auto offered = completions(words);
    for (const auto& widget : bundle) {
      EXPECT_TRUE(offered.contains(widget["kind"]))
          << ::testing::PrintToString(words) << " does not complete " << widget["kind"];
    }
  }
  // A prefix narrows the kinds to those it begins.
  for (const auto& kind : completions({"render", "--kind"}, "Compose")) EXPECT_TRUE(kind.starts_with("Compose"));
}

}  // namespace
}  // namespace quillan::cli
