// Every widget's cold `render --format png`, and `list`, as a new user runs
// them: whole processes, medians of five, beside the floor measured in the same
// rounds (sqlite3 scanning the journal's note dates once). Wall time and CPU
// time (user + system) both: on a loaded machine the wall time is mostly
// waiting for a core, and CPU time is the steadier comparison. The bench journal of
// 100,000 notes always; of 1,000,000 notes with QUILLAN_BENCH_MILLION=1 (its
// first build takes minutes and about 1 GB of /tmp).
//
// Usage: bench_cold_commands [label=]quillan-widgets ...
// Several binaries (a build before a change and one after) are timed in the
// same rounds, so that their ratios to the floor can be compared on a loaded
// machine. Without arguments: the quillan-widgets of this build tree.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchJournal.hpp"
#include "BinaryComparison.hpp"
#include "ChildProcess.hpp"

namespace {

using namespace quillan::bench;

struct Row {
  std::string name;
  std::vector<std::string> arguments;  // after the binary
};

struct Samples {
  std::vector<double> milliseconds;
  std::vector<double> cpuMilliseconds;
  std::vector<double> peakMegabytes;
};

std::vector<Row> rowsFor(int notes) {
  const std::vector<std::string> host = {"--group-container",
                                         groupDirectory(notes).string(),
                                         "--app-support",
                                         supportDirectory(notes).string(),
                                         "--now",
                                         kNowText,
                                         "--time-zone",
                                         kTimeZone,
                                         "--locale",
                                         kLocale,
                                         "--seed",
                                         "7"};
  std::vector<Row> rows;
  for (const char* kind :
       {"OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "StreakWidget", "ComposeButtonLockScreen"}) {
    auto arguments = host;
    for (const std::string part : {"render", "--kind", kind, "--format", "png", "--output"}) arguments.push_back(part);
    arguments.push_back((benchRoot(notes) / (std::string(kind) + ".png")).string());
    rows.push_back({kind, std::move(arguments)});
  }
  rows.push_back({"list (no journal)", {"list"}});
  return rows;
}

std::vector<std::string> floorCommand(int notes) {
  return {"sqlite3", "-readonly", (groupDirectory(notes) / "Quillan.sqlite").string(),
          "select count(*) from ZNOTE where ZDATE > 0"};
}

void record(Samples& samples, const ChildRun& run, const std::string& what) {
  if (!run.succeeded()) {
    std::fprintf(stderr, "bench_cold_commands: %s failed (status %d)\n", what.c_str(), run.status);
    std::exit(1);
  }
  samples.milliseconds.push_back(1e3 * run.wallSeconds);
  samples.cpuMilliseconds.push_back(1e3 * run.cpuSeconds());
  samples.peakMegabytes.push_back(run.peakRSSMegabytes());
}

void measure(int notes, const std::vector<Binary>& binaries) {
  ensureJournal(notes);
  std::printf("\n%d notes, medians of %d cold runs; floor: one sqlite3 scan of the note dates, same rounds\n\n", notes,
              roundsToRun());
  std::printf("| command | floor ms (CPU) |");
  for (const auto& binary : binaries) {
    std::printf(" %s ms | x floor | CPU ms | x floor CPU | peak RSS MB |", binary.label.c_str());
  }
  std::printf("\n|---|---|");
  for (std::size_t i = 0; i < binaries.size(); ++i) std::printf("---|---|---|---|---|");
  std::printf("\n");
  for (const auto& row : rowsFor(notes)) {
    Samples floor;
    std::vector<Samples> commands(binaries.size());
    // Floor and commands alternate, so that a busy moment of the machine
    // weighs on all of them alike.
    for (int round = 0; round < roundsToRun(); ++round) {
      record(floor, runQuietly(floorCommand(notes)), "the floor's sqlite3");
      for (std::size_t i = 0; i < binaries.size(); ++i) {
        auto arguments = row.arguments;
        arguments.insert(arguments.begin(), binaries[i].path);
        record(commands[i], runQuietly(arguments), binaries[i].label + " " + row.name);
      }
    }
    const double floorMs = median(floor.milliseconds);
    const double floorCpu = median(floor.cpuMilliseconds);
    std::printf("| %s | %.1f (%.1f) |", row.name.c_str(), floorMs, floorCpu);
    for (const auto& samples : commands) {
      const double ms = median(samples.milliseconds);
      const double cpu = median(samples.cpuMilliseconds);
      const double peak = *std::max_element(samples.peakMegabytes.begin(), samples.peakMegabytes.end());
      std::printf(" %.1f | %.2f | %.1f | %.2f | %.1f |", ms, ms / floorMs, cpu, cpu / floorCpu, peak);
    }
    std::printf("\n");
    std::fflush(stdout);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const auto binaries = binariesFrom(argc, argv);
  measure(kNotes, binaries);
  const char* million = std::getenv("QUILLAN_BENCH_MILLION");
  if (million && std::string(million) == "1") measure(1'000'000, binaries);
  return 0;
}
