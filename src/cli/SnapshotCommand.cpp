#include <iostream>
#include <set>
#include <thread>

#include "cli/Commands.hpp"
#include "cli/ModuleLoader.hpp"
#include "cli/OptionChecks.hpp"
#include "hosting/QuotedValue.hpp"
#include "pages/SnapshotReport.hpp"
#include "snapshot/CaseAnswer.hpp"
#include "snapshot/CaseWorkers.hpp"
#include "snapshot/SnapshotCase.hpp"
#include "snapshot/SnapshotConfig.hpp"
#include "snapshot/SnapshotFolder.hpp"
#include "snapshot/SnapshotRenderer.hpp"
#include "snapshot/SnapshotVerdict.hpp"

namespace quillan::cli {
namespace {

struct SnapshotOptions {
  std::filesystem::path dir;
  std::optional<std::filesystem::path> config;
  std::vector<std::string> cases;
  bool all = false;
  std::size_t jobs = std::max(1u, std::thread::hardware_concurrency());
  snapshot::SnapshotTolerance tolerance;
};

std::filesystem::path configPath(const SnapshotOptions& options) {
  return options.config.value_or(snapshot::SnapshotFolder{options.dir}.config());
}

void requireDirectory(const std::filesystem::path& dir) {
  std::error_code error;
  if (!std::filesystem::is_directory(dir, error)) throw hosting::badOption("--dir", "no such folder", dir.string());
}

// The first record writes the config it runs on, for the user to review and keep.
snapshot::SnapshotConfig configForRecord(const SnapshotOptions& options, const HostOptions& host,
                                         const snapshot::SnapshotFolder& folder) {
  const auto path = configPath(options);
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(path, error))) {
    folder.write(path,
                 snapshot::snapshotConfigText(snapshot::defaultSnapshotConfig(host.groupContainer, host.seed), path));
    std::cout << "wrote the config " << path.string() << "\n";
  }
  return snapshot::readSnapshotConfig(path);
}

std::vector<snapshot::SnapshotCase> casesToRecord(const std::vector<snapshot::SnapshotCase>& cases,
                                                  const SnapshotOptions& options,
                                                  const snapshot::SnapshotFolder& folder) {
  std::set<std::string> named(options.cases.begin(), options.cases.end());
  std::vector<snapshot::SnapshotCase> chosen;
  for (const auto& snapshotCase : cases) {
    const bool recorded = std::filesystem::exists(folder.recordedView(snapshotCase)) &&
                          std::filesystem::exists(folder.recordedPicture(snapshotCase));
    if (options.all || named.erase(snapshotCase.name) > 0 || (options.cases.empty() && !recorded)) {
      chosen.push_back(snapshotCase);
    }
  }
  if (!named.empty()) throw hosting::badOption("--case", "no such case in the matrix", *named.begin());
  return chosen;
}

// Refuses a suite with a linked entry before anything in it is written.
void refuseLinkedConfig(const SnapshotOptions& options, const snapshot::SnapshotFolder& folder) {
  if (!options.config) folder.refuseLinks({}, /*ownConfig=*/true);
}

int record(const SnapshotOptions& options, const HostOptions& host) {
  if (options.all && !options.cases.empty()) throw hosting::UsageError("--all: cannot be combined with --case");
  const snapshot::SnapshotFolder folder{options.dir};
  folder.makeFolder(options.dir);
  refuseLinkedConfig(options, folder);
  const auto config = configForRecord(options, host, folder);
  const auto cases = snapshot::snapshotCases(config);
  folder.refuseLinks(cases, !options.config);
  const auto chosen = casesToRecord(cases, options, folder);
  folder.makeFolder(folder.cases());
  const snapshot::SnapshotRenderer renderer(config);
  // Loaded before the workers fork, so that they share it (the fonts are not: see CaseWorkers).
  if (!chosen.empty()) drawingModule();
  snapshot::CaseWorkers::run(
      options.jobs, chosen,
      [&](const snapshot::SnapshotCase& snapshotCase) {
        return snapshot::encodePicture(renderer.draw(snapshotCase, drawingModule()));
      },
      [&](const snapshot::SnapshotCase& snapshotCase, const std::string& result) {
        const auto picture = snapshot::decodePicture(result);
        folder.write(folder.recordedView(snapshotCase), picture.viewJson);
        folder.write(folder.recordedPicture(snapshotCase),
                     {reinterpret_cast<const char*>(picture.png.data()), picture.png.size()});
      });
  std::cout << "recorded " << chosen.size() << " of " << cases.size() << " cases in "
            << std::filesystem::absolute(folder.cases()).string() << "\n";
  return 0;
}

// The difference images of an earlier run would pass for this one's: the
// first failure replaces the whole folder.
class DifferenceWriter {
 public:
  explicit DifferenceWriter(const snapshot::SnapshotFolder& folder) : folder_(folder) {}

  void write(const snapshot::SnapshotCase& snapshotCase, snapshot::SnapshotVerdict& verdict) {
    if (!verdict.difference) return;
    if (!cleared_) {
      folder_.remove(folder_.differences());
      folder_.makeFolder(folder_.differences());
      cleared_ = true;
    }
    const auto file = folder_.differenceImage(snapshotCase);
    folder_.writePicture(file, *verdict.difference, drawingModule());
    verdict.difference.reset();
    verdict.differenceImage = file.lexically_relative(folder_.root).string();
  }

  // What an earlier run left that this one did not replace.
  void removeStale(bool keepReport) const {
    if (!cleared_) folder_.remove(folder_.differences());
    if (!keepReport) folder_.remove(folder_.report());
  }

 private:
  const snapshot::SnapshotFolder& folder_;
  bool cleared_ = false;
};

// Only a run with failures writes: a difference image per failing case and
// the report. A run where every case matches leaves the suite as it found it,
// but for the results of an earlier run, which would tell of failures gone.
int verify(const SnapshotOptions& options) {
  requireDirectory(options.dir);
  const snapshot::SnapshotFolder folder{options.dir};
  refuseLinkedConfig(options, folder);
  const auto config = snapshot::readSnapshotConfig(configPath(options));
  const auto cases = snapshot::snapshotCases(config);
  folder.refuseLinks(cases, !options.config);
  const snapshot::SnapshotRenderer renderer(config);
  DifferenceWriter differences(folder);
  std::vector<snapshot::SnapshotVerdict> verdicts;
  std::size_t failed = 0;
  // Loaded before the workers fork, so that they share it (the fonts are not: see CaseWorkers).
  drawingModule();
  snapshot::CaseWorkers::run(
      options.jobs, cases,
      [&](const snapshot::SnapshotCase& snapshotCase) {
        const auto& drawing = drawingModule();
        const auto picture = renderer.draw(snapshotCase, drawing);
        return snapshot::encodeVerdict(snapshot::judgeSnapshot(snapshotCase, picture, folder, options.tolerance,
                                                               drawing));
      },
      [&](const snapshot::SnapshotCase& snapshotCase, const std::string& result) {
        verdicts.push_back(snapshot::decodeVerdict(result));
        if (verdicts.back().passed()) return;
        ++failed;
        std::cout << "FAIL " << snapshotCase.name << ": " << hosting::singleLine(verdicts.back().problem) << "\n";
        differences.write(snapshotCase, verdicts.back());
      });
  differences.removeStale(/*keepReport=*/failed > 0);
  std::cout << (verdicts.size() - failed) << " of " << verdicts.size() << " cases match";
  if (failed > 0) {
    folder.write(folder.report(), pages::snapshotReportPage(verdicts, options.tolerance));
    std::cout << "; report " << std::filesystem::absolute(folder.report()).string();
  }
  std::cout << "\n";
  return failed == 0 ? 0 : 1;
}

void addSharedOptions(CLI::App& command, SnapshotOptions& options) {
  command.add_option("--dir", options.dir, "the suite's folder: recordings in cases/, difference images in diffs/")
      ->required();
  command.add_option("--config", options.config,
                     "the suite's JSON config (default: DIR/snapshots.json; the first record writes one)");
  command.add_option("--jobs", options.jobs, "worker processes drawing cases (default: one per core)")
      ->transform(wholeNumber())
      ->check(CLI::Range(std::size_t{1}, std::size_t{256}));
}

}  // namespace

Run addSnapshotCommand(CLI::App& app, const HostOptions& host) {
  auto* command = app.add_subcommand(
      "snapshot",
      "snapshot tests of the widgets: `record` draws every case of the config's matrix (view tree JSON and\n"
      "PNG), `verify` draws them again and compares; exit 0 when all match, 1 when any differs (see\n"
      "DIR/report.html and DIR/diffs/), 2 for a bad config or a DIR that cannot be used");
  command->require_subcommand(1);
  auto options = std::make_shared<SnapshotOptions>();
  auto* recordCommand = command->add_subcommand(
      "record", "record the cases not recorded yet, those named with --case, or all with --all");
  addSharedOptions(*recordCommand, *options);
  recordCommand->add_option("--case", options->cases, "a case to record again, by name (repeatable)");
  recordCommand->add_flag("--all", options->all, "record every case again");
  auto* verifyCommand = command->add_subcommand("verify", "draw every case again and compare with its recording");
  addSharedOptions(*verifyCommand, *options);
  verifyCommand
      ->add_option("--precision", options->tolerance.precision, "share of pixels that must match, 0 to 1 (default: 1)")
      ->transform(decimalNumberFrom(0, 1));
  verifyCommand
      ->add_option("--perceptual-precision", options->tolerance.perceptualPrecision,
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
