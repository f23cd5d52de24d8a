#include "cli/CompletionTable.hpp"

namespace quillan::cli {
namespace {

// Hidden subcommands and options are those CLI11 keeps out of --help: their group is empty.
std::vector<const CLI::App*> shownSubcommands(const CLI::App& app) {
  std::vector<const CLI::App*> shown;
  for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (!subcommand->get_group().empty()) shown.push_back(subcommand);
  }
  return shown;
}

std::string optionNames(const CLI::App& app) {
  std::string names;
  for (const CLI::Option* option : app.get_options()) {
    if (option == app.get_help_ptr() || option->get_group().empty()) continue;
    for (const auto& name : option->get_snames()) names += (names.empty() ? "-" : " -") + name;
    for (const auto& name : option->get_lnames()) names += (names.empty() ? "--" : " --") + name;
  }
  return names;
}

void writeLines(const CLI::App& app, const std::string& path, std::ostream& out) {
  const auto subcommands = shownSubcommands(app);
  std::string names;
  for (const CLI::App* subcommand : subcommands) names += (names.empty() ? "" : " ") + subcommand->get_name();
  out << path << ":" << names << ":" << optionNames(app) << "\n";
  for (const CLI::App* subcommand : subcommands) {
    writeLines(*subcommand, path.empty() ? subcommand->get_name() : path + " " + subcommand->get_name(), out);
  }
}

}  // namespace

void writeCompletionTable(const CLI::App& app, std::ostream& out) { writeLines(app, "", out); }

std::string subcommandSentence(const CLI::App& app) {
  const auto subcommands = shownSubcommands(app);
  std::string sentence;
  for (std::size_t index = 0; index < subcommands.size(); ++index) {
    if (index > 0) sentence += index + 1 == subcommands.size() ? " or " : ", ";
    sentence += subcommands[index]->get_name();
  }
  return sentence;
}

}  // namespace quillan::cli
