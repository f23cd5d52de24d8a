#include <iostream>

#include "cli/Commands.hpp"
#include "hosting/TimelineJson.hpp"
#include "hosting/WidgetLookup.hpp"

namespace quillan::cli {
namespace {

widgets::TimelineRequest parseRequest(const std::string& text) {
  if (text == "timeline") return widgets::TimelineRequest::timeline;
  if (text == "snapshot") return widgets::TimelineRequest::snapshot;
  if (text == "placeholder") return widgets::TimelineRequest::placeholder;
  throw hosting::badOption("--request", "unknown request", text, "expected timeline, snapshot or placeholder");
}

}  // namespace

Run addTimelineCommand(CLI::App& app) {
  auto* command =
      app.add_subcommand("timeline",
                         "the provider's answer as one line of JSON, dates in the chosen zone with their offset:\n"
                         "{\"entries\":[{\"date\":...}],\"policy\":{\"type\":\"after\",\"date\":...}}\n"
                         "(snapshots and placeholders have no policy)");
  auto kind = std::make_shared<std::string>();
  auto request = std::make_shared<std::string>("timeline");
  command->add_option("--kind", *kind, "the widget's kind (see `list`)")->required();
  command->add_option("--request", *request, "timeline, snapshot or placeholder (default: timeline)");
  return [command, kind, request] {
    if (!command->parsed()) return -1;
    const auto& widget = hosting::widgetOfKind(*kind);
    const auto answer = widget.provider(parseRequest(*request), {});
    std::cout << hosting::timelineJson(answer) << "\n";
    return 0;
  };
}

}  // namespace quillan::cli
