#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <set>

#include "bundle/TimelineWidgetBundle.hpp"
#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "hosting/QuotedValue.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "replay/EntryPainter.hpp"
#include "replay/NoteEvents.hpp"
#include "replay/PrivateJournal.hpp"
#include "replay/Simulation.hpp"
#include "store/CoreDataStack.hpp"

namespace quillan::cli {
namespace {

// Each simulated day draws two pictures per widget at least; a quarter of a
// year (a season's daylight-saving change and back) is about two thousand,
// and a mistyped year cannot fill the disk.
constexpr double kMaxSpanDays = 92;

struct SimulateOptions {
  std::string from;
  std::string to;
  std::vector<std::string> kinds;
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> events;
  std::string device = "393x852";
};

platform::Date instant(const std::string& text, std::string_view option) {
  const auto date = platform::ISO8601::parse(text);
  if (!date)
    throw hosting::badOption(option, "not an ISO-8601 date with offset", text, "e.g. 2026-03-07T00:00:00-05:00");
  return *date;
}

std::vector<std::string> kindsToPlace(const std::vector<std::string>& named) {
  if (named.empty()) {
    std::vector<std::string> all;
    for (const auto& widget : bundle::TimelineWidgetBundle::body()) all.push_back(widget.kind);
    return all;
  }
  std::set<std::string> seen;
  for (const auto& kind : named) {
    hosting::widgetOfKind(kind);
    if (!seen.insert(kind).second) throw hosting::badOption("--kind", "named twice", kind, "a widget is placed once");
  }
  return named;
}

replay::SimulationPlan planOf(const SimulateOptions& options) {
  replay::SimulationPlan plan{
      instant(options.from, "--from"), instant(options.to, "--to"), kindsToPlace(options.kinds), {}};
  if (plan.to <= plan.from) throw hosting::badOption("--to", "not after --from", options.to);
  const double days = (plan.to.timeIntervalSinceReferenceDate() - plan.from.timeIntervalSinceReferenceDate()) / 86400;
  if (days > kMaxSpanDays) {
    throw hosting::badOption("--to",
                             "more than " + std::to_string(static_cast<int>(kMaxSpanDays)) + " days after --from",
                             options.to);
  }
  if (options.events) plan.notes = replay::readNoteEvents(*options.events, plan.from, plan.to);
  return plan;
}

std::filesystem::path outputFolder(const std::optional<std::filesystem::path>& named) {
  if (!named) {
    auto pattern = (std::filesystem::temp_directory_path() / "quillan-widgets-simulation-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot create a folder " + hosting::quotedValue(pattern));
    return pattern;
  }
  std::error_code error;
  if (std::filesystem::exists(*named, error) &&
      (!std::filesystem::is_directory(*named, error) || !std::filesystem::is_empty(*named, error))) {
    throw hosting::badOption("--output", "not an empty folder", named->string(),
                             "pictures of another run would mix in");
  }
  std::filesystem::create_directories(*named, error);
  if (error) throw hosting::badOption("--output", "cannot create the folder", named->string(), error.message());
  return *named;
}

// The limits of the phone's extension. The address sanitizer's shadow memory
// (in builds made to test the host) multiplies a child's resident set, views
// with pictures past 120 MB; it is no part of the extension's footprint, which
// the ceiling stands for, so such builds only keep a runaway child in check.
worker::WorkerOptions extensionLimits() {
  worker::WorkerOptions options;
#if defined(__SANITIZE_ADDRESS__)
  options.memoryCeilingBytes = std::int64_t{1024} * 1024 * 1024;
#endif
  return options;
}

std::filesystem::path userJournal(const HostOptions& host) {
  return host.groupContainer.value_or(platform::FileManager::defaultGroupContainerDirectory()) / store::kStoreFileName;
}

void writeFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file) throw std::runtime_error("cannot write " + hosting::quotedValue(path.string()));
}

std::string subtitle(const replay::SimulationPlan& plan, const replay::SimulationLog& log) {
  std::string text = "From " + log.iso(plan.from) + " to " + log.iso(plan.to) + " in " +
                     platform::TimeZone::current().identifier() + ".";
  if (!plan.notes.empty()) text += " " + std::to_string(plan.notes.size()) + " notes written on the way.";
  return text;
}

int runSimulation(const SimulateOptions& options, const HostOptions& host) {
  const auto plan = planOf(options);
  const auto device = hosting::deviceNamed(options.device);
  const auto output = outputFolder(options.output);
  // The workers fork before this process opens any journal: their children
  // must not inherit SQLite's per-file state. On a private journal a second
  // one evaluates views and timelines beside the first (replay/EvaluationPipeline.hpp).
  worker::WidgetWorker worker(extensionLimits());
  std::optional<worker::WidgetWorker> second;
  if (!plan.notes.empty()) second.emplace(extensionLimits());
  std::unique_ptr<replay::PrivateJournal> journal;
  if (!plan.notes.empty()) journal = std::make_unique<replay::PrivateJournal>(userJournal(host));
  std::vector<worker::WidgetWorker*> workers = {&worker};
  if (second) workers.push_back(&*second);
  replay::EvaluationPipeline evaluations(workers);

  worker::ProcessSettings settings;
  settings.seed = host.seed;
  if (journal) {
    settings.groupContainer = journal->groupContainer();
    settings.appSupport = journal->appSupport();
  }
  const auto log = [](std::string_view kind, std::string_view line) {
    std::cerr << kind << ": " << hosting::singleLine(line) << "\n";
  };
  replay::EntryPainter painter(
      evaluations, settings, [&host](views::WidgetFamily family) { return host.environment(family); }, device, output,
      drawingModule());
  replay::PipelinedTimelines timelines(evaluations, settings, log);
  replay::Simulation simulation(timelines, painter, journal.get(), platform::TimeZone::current());
  simulation.run(plan);

  writeFile(output / "log.json", simulation.log().text());
  writeFile(output / "index.html", pages::filmstripPage(simulation.filmstrip(), subtitle(plan, simulation.log())));
  std::cout << std::filesystem::absolute(output).string() << "\n";
  return 0;
}

}  // namespace

Run addSimulateCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "simulate",
      "live through days of the host on a virtual clock: ask each widget for its timeline, show each entry\n"
      "when its date arrives, ask again when the policy comes due, and draw every entry shown. Writes\n"
      "log.json (every timeline, entry, reload and failure), light and dark PNGs and the view tree of each\n"
      "entry, and index.html, a filmstrip per widget whose image maps open the deep links; prints the folder");
  auto options = std::make_shared<SimulateOptions>();
  command->add_option("--from", options->from, "start: ISO-8601 with offset or Z")->required();
  command
      ->add_option("--to", options->to,
                   "end: ISO-8601 with offset or Z, after --from and at most " +
                       std::to_string(static_cast<int>(kMaxSpanDays)) + " days later")
      ->required();
  command->add_option("--kind", options->kinds, "a widget to place (repeatable; default: all five, see `list`)");
  command->add_option("--output", options->output,
                      "an empty or new folder for the results (default: a new folder in the temporary folder)");
  command->add_option("--events", options->events,
                      "JSON [{\"at\": ISO, \"note\": {\"date\": ISO, \"text\": \"...\"}}]: notes the user writes at\n"
                      "those moments, each followed by the app's reload of all timelines. They go into a private\n"
                      "copy of the journal, removed afterwards; the journal itself is never written");
  command->add_option("--device", options->device, "device profile for the widget sizes (default: 393x852)");
  return [command, options, &host] {
    if (!command->parsed()) return -1;
    return runSimulation(*options, host);
  };
}

}  // namespace quillan::cli
