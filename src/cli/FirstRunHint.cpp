#include "cli/FirstRunHint.hpp"

#include <filesystem>
#include <sstream>

#include "platform/FileManager.hpp"

namespace quillan::cli {

std::optional<std::string> missingJournalHint(const HostOptions& host) {
  if (host.groupContainer) return std::nullopt;
  const auto folder = platform::FileManager::defaultGroupContainerDirectory();
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return std::nullopt;
  return "no journal: looked for Quillan.sqlite in " + folder.string() +
         ", which does not exist; make a sample with `quillan-widgets sample-journal --group-container DIR`" +
         " or point at a journal's folder with --group-container DIR";
}

std::string environmentHelp(const CLI::App& app) {
  std::ostringstream out;
  out << "\nEnvironment options (before or after the subcommand; see quillan-widgets --help):\n";
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group() != "Environment") continue;
    const std::string name = option->get_name();
    const std::string description = option->get_description();
    out << "  " << name << std::string(name.size() < 26 ? 26 - name.size() : 1, ' ')
        << description.substr(0, description.find('\n')) << "\n";
  }
  return out.str();
}

}  // namespace quillan::cli
