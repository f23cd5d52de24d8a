#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "audit/AuditBaseline.hpp"
#include "audit/AuditMatrix.hpp"
#include "audit/AuditRun.hpp"
#include "audit/CaseAuditor.hpp"
#include "audit/Finding.hpp"
#include "audit/FindingCrop.hpp"
#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"
#include "pages/AuditReport.hpp"

namespace quillan::cli {
namespace {

// The compose button's prompt is drawn at random: an audit without --seed
// still draws the same prompts every run, so that its findings compare.
constexpr std::uint64_t kAuditDefaultSeed = 2026;

struct AuditOptions {
  std::vector<std::string> kinds;
  std::string locales = "all";
  std::string dynamicTypes = "all";
  std::string colorSchemes = "all";
  std::string renderingModes = "all";
  std::filesystem::path output = "audit";
  bool json = false;
  std::string failOn = "error";
  std::size_t jobs = std::max(1u, std::thread::hardware_concurrency());
  std::optional<std::filesystem::path> baseline;
};

audit::AuditMatrix matrixOf(const AuditOptions& options) {
  return {audit::parseKinds(options.kinds), audit::parseLocales(options.locales),
          audit::parseDynamicTypes(options.dynamicTypes), audit::parseColorSchemes(options.colorSchemes),
          audit::parseRenderingModes(options.renderingModes)};
}

void prepareOutputFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error || !std::filesystem::is_directory(folder))
    throw hosting::badOption("--output", "not a folder", folder.string());
  // What the report writes is refused as a symbolic link before anything is
  // written: writing through one would change a file elsewhere.
  std::vector<std::filesystem::path> written{folder / "audit.json", folder / "index.html", folder / "crops"};
  if (std::filesystem::is_directory(std::filesystem::symlink_status(folder / "crops", error))) {
    for (const auto& entry : std::filesystem::directory_iterator(folder / "crops", error))
      written.push_back(entry.path());
  }
  for (const auto& path : written) {
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(path, error)))
      throw hosting::badOption("--output", "holds a symbolic link the report would write through", path.string());
  }
}

std::string summaryOf(const audit::AuditOutcome& outcome, bool withBaseline) {
  const auto& counts = outcome.newCounts;
  return "audited " + std::to_string(outcome.cases) + " cases: " + std::to_string(counts[2]) + " errors, " +
         std::to_string(counts[1]) + " warnings, " + std::to_string(counts[0]) + " notes" +
         (withBaseline ? " not in the baseline" : "");
}

// The page's pictures are the phone's own density's two thirds: enough to see
// an outlined glyph, small enough for a page of a hundred of them.
constexpr double kCropScale = 2;

void writeReportPage(const std::filesystem::path& folder, const audit::AuditSummary& summary, std::size_t cases,
                     std::uint64_t seed) {
  const auto& drawing = drawingModule();
  const auto crops = folder / "crops";
  std::filesystem::remove_all(crops);
  std::filesystem::create_directories(crops);
  audit::CaseAuditor auditor(drawing, seed);
  std::vector<std::string> names;
  for (const auto& finding : summary.examples()) {
    const auto name = "crops/" + std::to_string(names.size() + 1) + ".png";
    drawing.writePNG(audit::findingCrop(auditor.picture(finding.auditCase, kCropScale), kCropScale, finding.frame),
                     folder / name);
    names.push_back(name);
  }
  std::ofstream page(folder / "index.html", std::ios::binary);
  page << pages::auditReportPage(summary, cases, names);
  if (!page) throw hosting::badOption("--output", "cannot write", (folder / "index.html").string());
}

int run(const AuditOptions& options, const HostOptions& host) {
  const auto failOn = *views::fromString<audit::Severity>(options.failOn);
  const auto baseline = options.baseline ? audit::AuditBaseline::read(*options.baseline) : audit::AuditBaseline{};
  audit::AuditRunSettings settings{.matrix = matrixOf(options),
                                   .jobs = options.jobs,
                                   .seed = host.seed.value_or(kAuditDefaultSeed),
                                   .baseline = &baseline,
                                   .progress = isatty(STDERR_FILENO) ? &std::cerr : nullptr};
  // The module is loaded before the workers fork, so that they share it; the
  // fonts are not: Pango sorts fonts on threads of its own, and a fork while
  // one of them holds fontconfig's lock leaves the worker waiting for good.
  const auto& drawing = drawingModule();
  if (options.json) {
    const auto outcome = audit::runAudit(settings, drawing, std::cout);
    return outcome.fails(failOn) ? 1 : 0;
  }
  prepareOutputFolder(options.output);
  const auto path = options.output / "audit.json";
  std::ofstream file(path, std::ios::binary);
  if (!file) throw hosting::badOption("--output", "cannot write", path.string());
  audit::AuditSummary summary;
  settings.summary = &summary;
  const auto outcome = audit::runAudit(settings, drawing, file);
  file.close();
  if (!file) throw hosting::badOption("--output", "cannot write", path.string());
  writeReportPage(options.output, summary, outcome.cases, settings.seed);
  std::cout << summaryOf(outcome, options.baseline.has_value()) << "; report "
            << std::filesystem::absolute(options.output).string() << "\n";
  return outcome.fails(failOn) ? 1 : 0;
}

}  // namespace

Run addAuditCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "audit",
      "every widget drawn in every locale, text size, colour scheme and rendering mode, and checked as a reviewer\n"
      "would: missing glyphs, clipping, truncation that hides the point, contrast, tap targets, mirroring in\n"
      "right-to-left locales and overlapping texts (see docs/audit.md); writes DIR/audit.json and DIR/index.html; exit "
      "0 when no new finding reaches\n"
      "--fail-on, 1 when one does, 2 for bad options");
  auto options = std::make_shared<AuditOptions>();
  command->add_option("--kind", options->kinds, "a widget to audit (repeatable; default: all five, see `list`)");
  command->add_option("--locales", options->locales,
                      "all (every locale ICU knows; the default) or ICU IDs, e.g. en_US,ar_EG");
  command->add_option("--dynamic-types", options->dynamicTypes,
                      "all (the default) or text sizes, e.g. large,accessibility5");
  command->add_option("--color-schemes", options->colorSchemes, "all (the default) or light,dark");
  command->add_option("--rendering-modes", options->renderingModes, "all (the default) or fullColor,accented,vibrant");
  command->add_option("--output", options->output, "the folder the report is written to (default: audit)");
  command->add_flag("--json", options->json, "print audit.json on standard output instead of writing the folder");
  command
      ->add_option("--fail-on", options->failOn,
                   "the least severe finding that fails the run: info, warning or error (default)")
      ->check(enumName<audit::Severity>("severity"));
  command->add_option("--jobs", options->jobs, "worker processes drawing cases (default: one per core)")
      ->transform(wholeNumber())
      ->check(CLI::Range(std::size_t{1}, std::size_t{256}));
  command->add_option("--baseline", options->baseline,
                      "an earlier audit.json: its findings are accepted, only new ones count for --fail-on");
  return [command, options, &host] { return command->parsed() ? run(*options, host) : -1; };
}

}  // namespace quillan::cli
