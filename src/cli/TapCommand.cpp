#include <iostream>

#include "cli/Commands.hpp"
#include "cli/FontPreparation.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"
#include "hosting/WidgetLookup.hpp"

namespace quillan::cli {

Run addTapCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "tap", "the URL a tap at (x, y) opens, in points from the widget's top-left corner; nothing if none");
  struct Options {
    std::string kind;
    double x = 0, y = 0;
    std::string device = "393x852";
  };
  auto options = std::make_shared<Options>();
  command->add_option("--kind", options->kind, "the widget's kind (see `list`)")->required();
  command->add_option("--x", options->x, "points from the left edge, a decimal number")
      ->required()
      ->transform(decimalNumber());
  command->add_option("--y", options->y, "points from the top edge, a decimal number")
      ->required()
      ->transform(decimalNumber());
  command->add_option("--device", options->device, "device profile for the widget sizes (default: 393x852)");
  return [command, options, &host] {
    if (!command->parsed()) return -1;
    const auto& widget = hosting::widgetOfKind(options->kind);
    const auto family = widget.supportedFamilies.front();
    const auto context = render::makeRenderContext(host.environment(family), family,
                                                   hosting::deviceNamed(options->device));
    FontPreparation fonts(prepareDrawingFonts);
    const auto tree = widget.content(hosting::currentEntryDate(widget), context.env);
    fonts.finish();
    if (const auto url = drawingModule().hitTest(tree, context, {options->x, options->y})) std::cout << *url << "\n";
    return 0;
  };
}

}  // namespace quillan::cli
