// `snapshot verify` of a 200-case suite (5 widgets x light and dark x 20
// locales, scale 2) on the bench journal of 100,000 notes, as CI runs it: whole
// processes, cold, medians of five, beside the floor measured in the same
// rounds (sqlite3 scanning the journal's note dates once). Wall time and CPU
// time (user + system, the command's workers included): CPU over wall is how
// many cores the command kept busy.
//
// Usage: bench_snapshot_verify [label=]quillan-widgets ...
// The suite is recorded once, by the first binary, under the bench journal's
// folder, and reused; every binary then verifies it, so a build that draws a
// single pixel or view differently from the recording's fails the bench. Several
// binaries (a build before a change and one after) are timed in the same rounds.
// Without arguments: the quillan-widgets of this build tree.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "BenchJournal.hpp"
#include "BinaryComparison.hpp"
#include "ChildProcess.hpp"

namespace {

using namespace quillan::bench;

struct Samples {
  std::vector<double> milliseconds;
  std::vector<double> cpuMilliseconds;
  std::vector<double> peakMegabytes;
};

constexpr const char* kLocales[] = {
    "en_US", "de_DE", "fr_FR", "es_ES", "it_IT", "pt_BR", "nl_NL", "sv_SE", "pl_PL", "ru_RU",
    "tr_TR", "ar_EG", "he_IL", "hi_IN", "th_TH", "ja_JP", "ko_KR", "zh_CN", "zh_TW", "ja_JP@calendar=japanese"};

std::filesystem::path suiteFolder() { return benchRoot() / "snapshot-suite-200"; }

std::string configText() {
  std::string locales;
  for (const char* locale : kLocales) locales += std::string(locales.empty() ? "" : ", ") + "\"" + locale + "\"";
  return "{\"journal\": \"" + groupDirectory().string() + "\", \"now\": \"" + kNowText + "\", \"timeZone\": \"" +
         kTimeZone +
         "\", \"seed\": 7, \"scale\": 2, \"matrix\": {\"kinds\": [\"OnThisDayWidget\", \"OTDComposeWidget\", "
         "\"ComposeButtonWidget\", \"StreakWidget\", \"ComposeButtonLockScreen\"], \"colorSchemes\": [\"light\", "
         "\"dark\"], \"renderingModes\": [\"fullColor\"], \"platformVersions\": [\"17.0\"], \"devices\": "
         "[\"393x852\"], \"locales\": [" +
         locales + "]}}\n";
}

std::vector<std::string> snapshotCommand(const Binary& binary, const char* action) {
  return {binary.path, "snapshot", action, "--dir", suiteFolder().string()};
}

// Recorded into a folder of its own and renamed into place, so that an
// interrupted recording is never verified against.
void ensureSuite(const Binary& recorder) {
  if (std::filesystem::exists(suiteFolder() / "cases")) return;
  const auto staging = suiteFolder().string() + ".partial";
  std::filesystem::remove_all(staging);
  std::filesystem::create_directories(staging);
  std::ofstream(std::filesystem::path(staging) / "snapshots.json") << configText();
  const auto run = runQuietly({recorder.path, "snapshot", "record", "--dir", staging});
  if (!run.succeeded()) {
    std::fprintf(stderr, "bench_snapshot_verify: %s could not record the suite (status %d)\n", recorder.label.c_str(),
                 run.status);
    std::exit(1);
  }
  std::printf("recorded the suite with %s in %.1f s\n", recorder.label.c_str(), run.wallSeconds);
  std::filesystem::rename(staging, suiteFolder());
}

void record(Samples& samples, const ChildRun& run, const std::string& what) {
  if (!run.succeeded()) {
    std::fprintf(stderr, "bench_snapshot_verify: %s failed (status %d; see %s)\n", what.c_str(), run.status,
                 (suiteFolder() / "report.html").c_str());
    std::exit(1);
  }
  samples.milliseconds.push_back(1e3 * run.wallSeconds);
  samples.cpuMilliseconds.push_back(1e3 * run.cpuSeconds());
  samples.peakMegabytes.push_back(run.peakRSSMegabytes());
}

std::vector<std::string> floorCommand() {
  return {"sqlite3", "-readonly", (groupDirectory() / "Quillan.sqlite").string(),
          "select count(*) from ZNOTE where ZDATE > 0"};
}

void measure(const std::vector<Binary>& binaries) {
  ensureJournal();
  ensureSuite(binaries.front());
  Samples floor;
  std::vector<Samples> verifies(binaries.size());
  // Floor and commands alternate, so that a busy moment of the machine weighs
  // on all of them alike.
  for (int round = 0; round < roundsToRun(); ++round) {
    record(floor, runQuietly(floorCommand()), "the floor's sqlite3");
    for (std::size_t i = 0; i < binaries.size(); ++i) {
      record(verifies[i], runQuietly(snapshotCommand(binaries[i], "verify")), binaries[i].label + " verify");
    }
  }
  const double floorMs = median(floor.milliseconds);
  std::printf(
      "\n200 cases, 100,000 notes, medians of %d cold runs; floor: one sqlite3 scan of the note dates, %.1f ms "
      "(CPU %.1f ms), same rounds\n\n",
      roundsToRun(), floorMs, median(floor.cpuMilliseconds));
  std::printf("| binary | verify ms | x floor | CPU ms | cores busy (CPU / wall) | cases per second | peak RSS MB |\n");
  std::printf("|---|---|---|---|---|---|---|\n");
  for (std::size_t i = 0; i < binaries.size(); ++i) {
    const double ms = median(verifies[i].milliseconds);
    const double cpu = median(verifies[i].cpuMilliseconds);
    const auto& peaks = verifies[i].peakMegabytes;
    std::printf("| %s | %.1f | %.1f | %.1f | %.2f | %.1f | %.1f |\n", binaries[i].label.c_str(), ms, ms / floorMs, cpu,
                cpu / ms, 200e3 / ms, *std::max_element(peaks.begin(), peaks.end()));
  }
}

}  // namespace

int main(int argc, char** argv) {
  measure(binariesFrom(argc, argv));
  return 0;
}
