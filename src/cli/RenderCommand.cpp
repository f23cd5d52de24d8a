#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "cli/Commands.hpp"
#include "cli/FontPreparation.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"
#include "hosting/BoundedFile.hpp"
#include "hosting/JsonFile.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"

namespace quillan::cli {
namespace {

// A widget shows a few hundred characters, and its tree as JSON is a few KB;
// `render --format json` of a widget showing a long note still writes the
// note's whole text. 4 MiB holds that for any note a person writes, and keeps
// a stray device or huge file from being read whole.
constexpr std::uintmax_t kTreeFileLimit = 4 * 1024 * 1024;

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
  if (!file) throw hosting::badOption("--output", "cannot write", options.output->string());
}

// What to draw: a widget's current view, or a tree another host wrote.
struct Drawing {
  std::string name;
  views::Environment environment;
  views::Node tree;
};

// `option` is where the name came from: --family, or the tree file's "family".
views::WidgetFamily familyNamed(const std::string& name, std::string_view option) {
  if (const auto family = views::fromString<views::WidgetFamily>(name)) return *family;
  throw hosting::badOption(option, "unknown widget family", name,
                           "expected " + views::acceptedNames<views::WidgetFamily>());
}

// Reads a bare view tree, or the object `render --format json` prints.
Drawing treeFromFile(const RenderOptions& options, const HostOptions& host) {
  const auto& path = *options.tree;
  const auto json = hosting::readJsonFile<nlohmann::ordered_json>(path, kTreeFileLimit, "--tree");
  const bool wrapped = json.is_object() && json.contains("view");
  const bool fileNamesFamily = wrapped && json.contains("family") && json["family"].is_string();
  const auto family = options.family    ? familyNamed(*options.family, "--family")
                      : fileNamesFamily ? familyNamed(json["family"].get<std::string>(), "--tree")
                                        : views::WidgetFamily::systemSmall;
  try {
    return {path.stem().string(), host.environment(family), views::nodeFromJson(wrapped ? json["view"] : json)};
  } catch (const views::ViewTreeJsonError& error) {
    throw hosting::badOption("--tree", "not a view tree", path.string(), error.what());
  }
}

render::RenderContext contextFor(const RenderOptions& options, const Drawing& drawing) {
  auto context = render::makeRenderContext(drawing.environment, drawing.environment.family,
                                           hosting::deviceNamed(options.device), options.scale);
  context.redacted = options.redacted;
  return context;
}

int draw(const RenderOptions& options, const Drawing& drawing) {
  if (options.format == "layout") {
    const auto context = contextFor(options, drawing);
    writeJson(options, drawingModule().layoutJSON(drawing.tree, context) + "\n");
    return 0;
  }
  render::Format format;
  if (options.format == "png") format = render::Format::png;
  else if (options.format == "svg") format = render::Format::svg;
  else if (options.format == "pdf") format = render::Format::pdf;
  else throw hosting::badOption("--format", "unknown format", options.format, "expected json, layout, png, svg or pdf");

  const render::RenderContext context = contextFor(options, drawing);
  const auto path = options.output.value_or(drawing.name + "." + options.format);
  drawingModule().renderToFile(drawing.tree, context, format, path);
  std::cerr << "wrote " << path.string() << "\n";
  return 0;
}

bool drawsText(const std::string& format) {
  return format == "png" || format == "svg" || format == "pdf" || format == "layout";
}

int run(const RenderOptions& options, const HostOptions& host) {
  // JSON needs no device, but a misspelt one is still an error rather than ignored.
  hosting::deviceNamed(options.device);
  if (options.tree) {
    const auto drawing = treeFromFile(options, host);
    if (options.format == "json") {
      writeJson(options, views::encodeViewTree(drawing.tree));
      return 0;
    }
    return draw(options, drawing);
  }
  if (options.kind.empty()) throw hosting::UsageError("--kind: a widget kind is required (or --tree FILE)");
  const auto& widget = hosting::widgetOfKind(options.kind);
  const auto family = widget.supportedFamilies.front();
  // A widget is only ever placed in the family it offers.
  if (options.family && familyNamed(*options.family, "--family") != family) {
    throw hosting::badOption("--family", "not offered by " + widget.kind, *options.family,
                             "expected " + hosting::familyName(family));
  }
  std::optional<FontPreparation> fonts;
  if (drawsText(options.format)) fonts.emplace(prepareDrawingFonts);
  const auto environment = host.environment(family);
  const auto entryDate = hosting::currentEntryDate(widget);
  const auto tree = widget.content(entryDate, environment);
  if (fonts) fonts->finish();

  if (options.format == "json") {
    nlohmann::ordered_json json;
    json["kind"] = widget.kind;
    json["family"] = hosting::familyName(family);
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
      "docs/view-tree.md), laid out (--format layout: frames, text lines, fonts, see docs/layout.md), or drawn to\n"
      "PNG, SVG or PDF");
  auto options = std::make_shared<RenderOptions>();
  command->add_option("--kind", options->kind, "the widget's kind (see `list`)");
  command->add_option("--tree", options->tree,
                      "draw a view tree from this JSON file instead (a bare tree, or what --format json prints;\n"
                      "a regular file of at most " +
                          hosting::byteCountName(kTreeFileLimit) + ")");
  command
      ->add_option("--family", options->family,
                   "systemSmall, systemMedium or accessoryCircular (default: the widget's, or the file's)")
      ->check(enumName<views::WidgetFamily>("widget family"));
  command->add_option("--format", options->format, "json, layout, png, svg or pdf (default: json)");
  command
      ->add_option(
          "--output", options->output,
          "file to write, in an existing folder (default: standard output for json and layout, <kind>.<format>\n"
          "otherwise)")
      ->check(outputFilePath());
  command->add_option("--scale", options->scale, "pixels per point for PNG, a decimal number from 1 to 3 (default: 3)")
      ->transform(decimalNumberFrom(1, 3));
  command->add_option("--device", options->device, "device profile for the widget sizes (default: 393x852)");
  command->add_flag("--redacted", options->redacted, "draw privacy-sensitive content as placeholders");
  return [command, options, &host] {
    if (!command->parsed()) return -1;
    return run(*options, host);
  };
}

}  // namespace quillan::cli
