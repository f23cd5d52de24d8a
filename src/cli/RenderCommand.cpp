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
  std::string format = "json";
  std::optional<std::filesystem::path> output;
  double scale = 3;
  std::string device = "393x852";
  bool redacted = false;
};

render::DeviceProfile deviceNamed(const std::string& name) {
  if (auto device = render::DeviceProfile::named(name)) return *device;
  std::string known;
  for (const auto& profile : render::DeviceProfile::profileNames()) known += (known.empty() ? "" : ", ") + profile;
  throw UsageError("--device: unknown device \"" + name + "\" (known: " + known + ")");
}

void writeJson(const RenderOptions& options, const std::string& text) {
  if (!options.output) {
    std::cout << text;
    return;
  }
  std::ofstream file(*options.output, std::ios::binary);
  file << text;
  if (!file) throw UsageError("--output: cannot write " + options.output->string());
}

int run(const RenderOptions& options, const HostOptions& host) {
  const auto& widget = widgetOfKind(options.kind);
  const auto family = widget.supportedFamilies.front();
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

  render::Format format;
  if (options.format == "png") format = render::Format::png;
  else if (options.format == "svg") format = render::Format::svg;
  else if (options.format == "pdf") format = render::Format::pdf;
  else throw UsageError("--format: unknown format \"" + options.format + "\" (expected json, png, svg or pdf)");
  if (options.scale < 1 || options.scale > 3) throw UsageError("--scale: must be 1, 2 or 3");

  render::RenderContext context;
  context.env = environment;
  context.device = deviceNamed(options.device);
  context.scale = options.scale;
  context.redacted = options.redacted;
  const auto path = options.output.value_or(widget.kind + "." + options.format);
  render::renderToFile(tree, context, format, path);
  std::cerr << "wrote " << path.string() << "\n";
  return 0;
}

}  // namespace

Run addRenderCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "render",
      "the view of the widget's current timeline entry: as JSON {kind, family, date, view} (the view tree, see\n"
      "docs/view-tree.md), or drawn to PNG, SVG or PDF");
  auto options = std::make_shared<RenderOptions>();
  command->add_option("--kind", options->kind, "the widget's kind (see `list`)")->required();
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
