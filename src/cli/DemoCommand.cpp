#include <fstream>
#include <iostream>
#include <optional>

#include "bundle/TimelineWidgetBundle.hpp"
#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "hosting/SampleJournalFiles.hpp"
#include "hosting/ScratchFolder.hpp"
#include "hosting/TimelineJson.hpp"
#include "hosting/WidgetLookup.hpp"
#include "pages/Gallery.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::cli {
namespace {

struct Variant {
  std::string name;
  views::ColorScheme scheme;
  views::WidgetRenderingMode mode;
};

std::vector<Variant> variantsOf(const widgets::WidgetConfiguration& widget) {
  std::vector<Variant> variants = {{"light", views::ColorScheme::light, views::WidgetRenderingMode::fullColor},
                                   {"dark", views::ColorScheme::dark, views::WidgetRenderingMode::fullColor}};
  // The lock screen draws its widgets as a vibrancy layer.
  if (widget.supportedFamilies.front() == views::WidgetFamily::accessoryCircular) {
    variants.push_back({"vibrant", views::ColorScheme::dark, views::WidgetRenderingMode::vibrant});
  }
  return variants;
}

pages::GallerySection drawWidget(const widgets::WidgetConfiguration& widget, const HostOptions& host,
                                 const std::filesystem::path& directory) {
  pages::GallerySection section{widget.kind,
                                widget.displayName,
                                widget.description,
                                hosting::timelineJson(widget.provider(widgets::TimelineRequest::timeline, {})),
                                {}};
  const auto family = widget.supportedFamilies.front();
  const auto entryDate = hosting::currentEntryDate(widget);
  for (const auto& variant : variantsOf(widget)) {
    auto environment = host.environment(family);
    environment.colorScheme = variant.scheme;
    environment.renderingMode = variant.mode;
    const auto context = render::makeRenderContext(environment, family);
    const auto tree = widget.content(entryDate, context.env);
    const auto file = widget.kind + "-" + variant.name + ".png";
    const auto& drawing = drawingModule();
    drawing.renderToFile(tree, context, render::Format::png, directory / file);
    const auto size = context.device.sizeOf(family);
    section.images.push_back({file, variant.name, size.width, size.height, drawing.hitRegions(tree, context)});
  }
  return section;
}

int runDemo(const std::filesystem::path& directory, HostOptions& host) {
  std::filesystem::create_directories(directory);
  std::string subtitle;
  // The sample journal lives as long as the drawing does.
  std::optional<hosting::ScratchFolder> sample;
  if (host.groupContainer) {
    subtitle = "The journal in " + host.groupContainer->string() + ".";
  } else {
    sample.emplace("quillan-widgets-demo");
    const auto container = hosting::makeGroupContainerIn(sample->path());
    hosting::writeSampleJournal(container, host.seed);
    platform::FileManager::setGroupContainerDirectory(container);
    // The sample is drawn as a phone of its own: a legacy journal wherever
    // --app-support or the default points must not be moved into it (and so
    // deleted).
    platform::FileManager::setApplicationSupportDirectory(platform::FileManager::applicationSupportBeside(container));
    subtitle = "A sample journal written for this gallery.";
  }
  subtitle += " Drawn at " + platform::ISO8601::format(platform::Clock::now(), platform::TimeZone::current()) + ".";

  std::vector<pages::GallerySection> sections;
  std::size_t images = 0;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    sections.push_back(drawWidget(widget, host, directory));
    images += sections.back().images.size();
  }
  const auto page = directory / "index.html";
  std::ofstream(page) << pages::galleryPage(sections, subtitle);
  std::cout << "wrote " << images << " widget images and the gallery " << std::filesystem::absolute(page).string()
            << "\n";
  return 0;
}

}  // namespace

Run addDemoCommand(CLI::App& app, HostOptions& host) {
  auto* command = app.add_subcommand(
      "demo",
      "write a sample journal into a temporary group container, removed afterwards (or read\n"
      "--group-container's), draw every widget in light and dark (the lock-screen one also vibrant) to PNG,\n"
      "and an index.html gallery whose image maps open the deep links");
  auto output = std::make_shared<std::filesystem::path>("quillan-widgets-demo");
  command->add_option("--output", *output, "folder for the images and index.html (default: ./quillan-widgets-demo)");
  return [command, output, &host] {
    if (!command->parsed()) return -1;
    return runDemo(*output, host);
  };
}

}  // namespace quillan::cli
