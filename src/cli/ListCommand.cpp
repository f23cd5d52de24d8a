#include <iostream>

#include <nlohmann/json.hpp>

#include "bundle/TimelineWidgetBundle.hpp"
#include "cli/Commands.hpp"
#include "hosting/WidgetLookup.hpp"

namespace quillan::cli {
namespace {

nlohmann::ordered_json bundleJson() {
  auto widgets = nlohmann::ordered_json::array();
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    auto families = nlohmann::ordered_json::array();
    for (auto family : widget.supportedFamilies) families.push_back(hosting::familyName(family));
    widgets.push_back({{"kind", widget.kind},
                       {"displayName", widget.displayName},
                       {"description", widget.description},
                       {"families", families}});
  }
  return widgets;
}

void printTable() {
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    std::string families;
    for (auto family : widget.supportedFamilies)
      families += (families.empty() ? "" : ", ") + hosting::familyName(family);
    std::cout << widget.kind << "\n  " << widget.displayName << " (" << families << ")\n  " << widget.description
              << "\n";
  }
}

}  // namespace

Run addListCommand(CLI::App& app) {
  auto* command = app.add_subcommand("list", "the widget bundle: kinds, names, descriptions, families");
  auto json = std::make_shared<bool>(false);
  command->add_flag("--json", *json, "print a JSON array of {kind, displayName, description, families}");
  return [command, json] {
    if (!command->parsed()) return -1;
    if (*json) {
      std::cout << bundleJson().dump(2) << "\n";
    } else {
      printTable();
    }
    return 0;
  };
}

}  // namespace quillan::cli
