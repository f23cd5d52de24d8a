#include <fstream>
#include <iostream>
#include <set>

#include "cli/Commands.hpp"
#include "cli/OptionChecks.hpp"
#include "cli/QuotedValue.hpp"
#include "cli/SnapshotCase.hpp"
#include "cli/SnapshotConfig.hpp"
#include "cli/SnapshotRenderer.hpp"
#include "cli/SnapshotReport.hpp"
#include "cli/SnapshotVerdict.hpp"

namespace quillan::cli {
namespace {

struct SnapshotOptions {
  std::filesystem::path dir;
  std::optional<std::filesystem::path> config;
  std::vector<std::string> cases;
  bool all = false;
  SnapshotTolerance tolerance;
};

std::filesystem::path configPath(const SnapshotOptions& options) {
  return options.config.value_or(options.dir / "snapshots.json");
}

void writeFile(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file) throw std::runtime_error("cannot write " + quotedValue(path.string()));
}

void writeBytes(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) throw std::runtime_error("cannot write " + quotedValue(path.string()));
}

void requireDirectory(const std::filesystem::path& dir) {
  std::error_code error;
  if (!std::filesystem::is_directory(dir, error)) throw badOption("--dir", "no such folder", dir.string());
}

// The first record writes the config it runs on, for the user to review and keep.
SnapshotConfig configForRecord(const SnapshotOptions& options, const HostOptions& host) {
  const auto path = configPath(options);
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    writeFile(path, snapshotConfigText(defaultSnapshotConfig(host), path));
    std::cout << "wrote the config " << path.string() << "\n";
  }
  return readSnapshotConfig(path);
}

std::vector<SnapshotCase> casesToRecord(const std::vector<SnapshotCase>& cases, const SnapshotOptions& options,
                                        const SnapshotFolder& folder) {
  std::set<std::string> named(options.cases.begin(), options.cases.end());
  std::vector<SnapshotCase> chosen;
  for (const auto& snapshotCase : cases) {
    const bool recorded = std::filesystem::exists(folder.recordedView(snapshotCase)) &&
                          std::filesystem::exists(folder.recordedPicture(snapshotCase));
    if (options.all || named.erase(snapshotCase.name) > 0 || (options.cases.empty() && !recorded)) {
      chosen.push_back(snapshotCase);
    }
  }
  if (!named.empty()) throw badOption("--case", "no such case in the matrix", *named.begin());
  return chosen;
}

int record(const SnapshotOptions& options, const HostOptions& host) {
  if (options.all && !options.cases.empty()) throw UsageError("--all: cannot be combined with --case");
  std::filesystem::create_directories(options.dir);
  const auto config = configForRecord(options, host);
  const SnapshotFolder folder{options.dir};
  const auto cases = snapshotCases(config);
  const auto chosen = casesToRecord(cases, options, folder);
  std::filesystem::create_directories(options.dir / "cases");
  const SnapshotRenderer renderer(config);
  for (const auto& snapshotCase : chosen) {
    const auto picture = renderer.draw(snapshotCase);
    writeFile(folder.recordedView(snapshotCase), picture.viewJson);
    writeBytes(folder.recordedPicture(snapshotCase), picture.png);
  }
  std::cout << "recorded " << chosen.size() << " of " << cases.size() << " cases in "
            << std::filesystem::absolute(folder.root / "cases").string() << "\n";
  return 0;
}

int verify(const SnapshotOptions& options) {
  requireDirectory(options.dir);
  const auto config = readSnapshotConfig(configPath(options));
  const SnapshotFolder folder{options.dir};
  // Difference images of an earlier run would pass for this one's.
  std::filesystem::remove_all(options.dir / "diffs");
  const SnapshotRenderer renderer(config);
  std::vector<SnapshotVerdict> verdicts;
  std::size_t failed = 0;
  for (const auto& snapshotCase : snapshotCases(config)) {
    verdicts.push_back(judgeSnapshot(snapshotCase, renderer.draw(snapshotCase), folder, options.tolerance));
    if (!verdicts.back().passed()) {
      ++failed;
      std::cout << "FAIL " << snapshotCase.name << ": " << singleLine(verdicts.back().problem) << "\n";
    }
  }
  writeFile(folder.report(), snapshotReportPage(verdicts, options.tolerance));
  std::cout << (verdicts.size() - failed) << " of " << verdicts.size() << " cases match; report "
            << std::filesystem::absolute(folder.report()).string() << "\n";
  return failed == 0 ? 0 : 1;
}

void addSharedOptions(CLI::App& command, SnapshotOptions& options) {
  command.add_option("--dir", options.dir, "the suite's folder: recordings in cases/, difference images in diffs/")
      ->required();
  command.add_option("--config", options.config,
                     "the suite's JSON config (default: DIR/snapshots.json; the first record writes one)");
}

}  // namespace

Run addSnapshotCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "snapshot",
      "snapshot tests of the widgets: `record` draws every case of the config's matrix (view tree JSON and\n"
      "PNG), `verify` draws them again and compares; exit 0 when all match, 1 when any differs (see\n"
      "DIR/report.html and DIR/diffs/), 2 for a bad config");
  command->require_subcommand(1);
  auto options = std::make_shared<SnapshotOptions>();
  auto* recordCommand = command->add_subcommand(
      "record", "record the cases not recorded yet, those named with --case, or all with --all");
  addSharedOptions(*recordCommand, *options);
  recordCommand->add_option("--case", options->cases, "a case to record again, by name (repeatable)");
  recordCommand->add_flag("--all", options->all, "record every case again");
  auto* verifyCommand = command->add_subcommand("verify", "draw every case again and compare with its recording");
  addSharedOptions(*verifyCommand, *options);
  verifyCommand->add_option("--precision", options->tolerance.precision,
                            "share of pixels that must match, 0 to 1 (default: 1)")
      ->transform(decimalNumberFrom(0, 1));
  verifyCommand->add_option("--perceptual-precision", options->tolerance.perceptualPrecision,
                            "how close a pixel must be to match, 0 to 1: 1 - CIE76 colour distance / 100\n"
                            "(default: 1, the same colour; 0.98 lets pixels differ by 2, about what an eye notices)")
      ->transform(decimalNumberFrom(0, 1));
  return [recordCommand, verifyCommand, options, &host] {
    if (recordCommand->parsed()) return record(*options, host);
    if (verifyCommand->parsed()) return verify(*options);
    return -1;
  };
}

}  // namespace quillan::cli
