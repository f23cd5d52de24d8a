#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "cli/Commands.hpp"
#include "cli/WidgetLookup.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "render/Renderer.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::cli {
namespace {

struct RenderOptions {
  std::string kind;
  std::optional<std::filesystem::path> tree;
  std::optional<std::string> family;
  std::string format = "json";
  std::optional<std::filesystem::path> output;
  double scale = 3;
  std::string device = "393x852";
  bool redacted = false;
};


void writeJson(const RenderOptions& options, const std::string& text) {
  if (!options.output) {
    std::cout << text;
    return;
  }
  std::ofstream file(*options.output, std::ios::binary);
  file << text;
  if (!file) throw UsageError("--output: cannot write " + options.output->string());
}

// What to draw: a widget's current view, or a tree another host wrote.
struct Drawing {
  std::string name;
  views::Environment environment;
  views::Node tree;
};

views::WidgetFamily familyNamed(const std::string& name) {
  try {
    return views::parseWidgetFamily(name);
  } catch (const views::EnvironmentParseError& error) {
    throw UsageError(std::string("--family: ") + error.what());
  }
}

// Reads a bare view tree, or the object `render --format json` prints.
Drawing treeFromFile(const RenderOptions& options, const HostOptions& host) {
  std::ifstream file(*options.tree, std::ios::binary);
  if (!file) throw UsageError("--tree: cannot read " + options.tree->string());
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const auto json = nlohmann::ordered_json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) throw UsageError("--tree: " + options.tree->string() + " is not JSON");
  const bool wrapped = json.is_object() && json.contains("view");
  std::string family = options.family.value_or(
      wrapped && json.contains("family") && json["family"].is_string() ? json["family"].get<std::string>()
                                                                        : "systemSmall");
  try {
    return {options.tree->stem().string(), host.environment(familyNamed(family)),
            views::nodeFromJson(wrapped ? json["view"] : json)};
  } catch (const views::ViewTreeJsonError& error) {
    throw UsageError("--tree: " + options.tree->string() + ": " + error.what());
  }
}

int draw(const RenderOptions& options, const Drawing& drawing) {
  render::Format format;
  if (options.format == "png") format = render::Format::png;
  else if (options.format == "svg") format = render::Format::svg;
  else if (options.format == "pdf") format = render::Format::pdf;
  else throw UsageError("--format: unknown format \"" + options.format + "\" (expected json, png, svg or pdf)");
  if (options.scale < 1 || options.scale > 3) throw UsageError("--scale: must be between 1 and 3");

  render::RenderContext context;
  context.env = drawing.environment;
  context.device = deviceNamed(options.device);
  context.scale = options.scale;
  context.redacted = options.redacted;
  const auto path = options.output.value_or(drawing.name + "." + options.format);
  render::renderToFile(drawing.tree, context, format, path);
  std::cerr << "wrote " << path.string() << "\n";
  return 0;
}

int run(const RenderOptions& options, const HostOptions& host) {
  if (options.tree) {
    const auto drawing = treeFromFile(options, host);
    if (options.format == "json") {
      writeJson(options, views::encodeViewTree(drawing.tree));
      return 0;
    }
    return draw(options, drawing);
  }
  if (options.kind.empty()) throw UsageError("render: --kind K (or --tree FILE) is required");
  const auto& widget = widgetOfKind(options.kind);
  const auto family = widget.supportedFamilies.front();
  // A widget is only ever placed in the family it offers.
  if (options.family && familyNamed(*options.family) != family) {
    throw UsageError("--family: " + widget.kind + " is offered only as " + familyName(family));
  }
  const auto environment = host.environment(family);
  const auto entryDate = currentEntryDate(widget);
  const auto tree = widget.content(entryDate, environment);

  if (options.format == "json") {
    nlohmann::ordered_json json;
    json["kind"] = widget.kind;
    json["family"] = familyName(family);
    json["date"] = platform::ISO8601::format(entryDate, platform::TimeZone::current());
    json["view"] = views::toJson(tree);
    // Note text that is not UTF-8 is shown as is by the views; JSON must stay valid.
    writeJson(options, json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    return 0;
  }

  return draw(options, {widget.kind, environment, tree});
}

}  // namespace

Run addRenderCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "render",
      "the view of the widget's current timeline entry: as JSON {kind, family, date, view} (the view tree, see\n"
      "docs/view-tree.md), or drawn to PNG, SVG or PDF");
  auto options = std::make_shared<RenderOptions>();
  command->add_option("--kind", options->kind, "the widget's kind (see `list`)");
  command->add_option("--tree", options->tree,
                      "draw a view tree from this JSON file instead (a bare tree, or what --format json prints)");
  command->add_option("--family", options->family,
                      "systemSmall, systemMedium or accessoryCircular (default: the widget's, or the file's)");
  command->add_option("--format", options->format, "json, png, svg or pdf (default: json)");
  command->add_option("--output", options->output,
                      "file to write (default: standard output for json, <kind>.<format> otherwise)");
  command->add_option("--scale", options->scale, "pixels per point for PNG, 1 to 3 (default: 3)");
  command->add_option("--device", options->device, "device profile for the widget sizes (default: 393x852)");
  command->add_flag("--redacted", options->redacted, "draw privacy-sensitive content as placeholders");
  return [command, options, &host] {
    if (!command->parsed()) return -1;
    return run(*options, host);
  };
}

}  // namespace quillan::cli
