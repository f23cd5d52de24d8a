#include <filesystem>
#include <fstream>
#include <iostream>

#include "audit/AuditMatrix.hpp"
#include "audit/AuditReport.hpp"
#include "audit/CaseAuditor.hpp"
#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"

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
};

audit::AuditMatrix matrixOf(const AuditOptions& options) {
  return {audit::parseKinds(options.kinds), audit::parseLocales(options.locales),
          audit::parseDynamicTypes(options.dynamicTypes), audit::parseColorSchemes(options.colorSchemes),
          audit::parseRenderingModes(options.renderingModes)};
}

void writeReportFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file) throw hosting::badOption("--output", "cannot write", path.string());
}

void prepareOutputFolder(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error || !std::filesystem::is_directory(folder))
    throw hosting::badOption("--output", "not a folder", folder.string());
}

std::string summaryOf(const audit::AuditReport& report) {
  std::size_t counts[3] = {0, 0, 0};
  for (const auto& finding : report.findings) ++counts[static_cast<int>(finding.severity)];
  return "audited " + std::to_string(report.cases) + " cases: " + std::to_string(counts[2]) + " errors, " +
         std::to_string(counts[1]) + " warnings, " + std::to_string(counts[0]) + " notes";
}

int run(const AuditOptions& options, const HostOptions& host) {
  const auto failOn = *views::fromString<audit::Severity>(options.failOn);
  audit::AuditReport report{.matrix = matrixOf(options)};
  if (!options.json) prepareOutputFolder(options.output);
  const auto cases = audit::auditCases(report.matrix);
  audit::CaseAuditor auditor(drawingModule(), host.seed.value_or(kAuditDefaultSeed));
  for (const auto& auditCase : cases) {
    auto findings = auditor.audit(auditCase);
    report.findings.insert(report.findings.end(), std::make_move_iterator(findings.begin()),
                           std::make_move_iterator(findings.end()));
  }
  report.cases = cases.size();
  const auto json = audit::auditJson(report);
  if (options.json) {
    std::cout << json;
  } else {
    writeReportFile(options.output / "audit.json", json);
    std::cout << summaryOf(report) << "; report " << std::filesystem::absolute(options.output).string() << "\n";
  }
  return audit::reachesSeverity(report.findings, failOn) ? 1 : 0;
}

}  // namespace

Run addAuditCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "audit",
      "every widget drawn in every locale, text size, colour scheme and rendering mode, and checked as a reviewer\n"
      "would: missing glyphs, clipped content, truncation that hides the point, tap targets and overlapping\n"
      "texts (see docs/audit.md); exit 0 when no finding reaches --fail-on, 1 when one does, 2 for bad options");
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
  return [command, options, &host] { return command->parsed() ? run(*options, host) : -1; };
}

}  // namespace quillan::cli
