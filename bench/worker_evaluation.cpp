// The live host's reload cost: each widget's timeline and view evaluated by a
// warm worker (a fresh child forked from a preloaded process per evaluation,
// reading the journal itself but for the note dates, which a view takes from
// the warm worker's read while the journal is unchanged), beside the floor of one scan of the same
// 100,000-note journal in this process: every note made an object
// (BM_ScanFloor), and SQLite's scan of the dates alone (BM_DateScanFloor).
// Ratios against those are what to compare on a shared machine.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "BenchJournal.hpp"
#include "platform/Clock.hpp"
#include "platform/Date.hpp"
#include "platform/FileManager.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "views/Environment.hpp"
#include "widgets/AllNotes.hpp"
#include "worker/WidgetWorker.hpp"

namespace {

using namespace quillan;
using namespace quillan::bench;

const char* const kKinds[] = {"OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "ComposeButtonLockScreen",
                              "StreakWidget"};

platform::Date benchNow() { return platform::Date::fromReferenceSeconds(kNow); }

worker::ProcessSettings settings() {
  return {.timeZone = kTimeZone,
          .locale = kLocale,
          .seed = 7,
          .groupContainer = groupDirectory(),
          .appSupport = supportDirectory()};
}

views::WidgetFamily familyOf(const std::string& kind) {
  if (kind == "ComposeButtonLockScreen") return views::WidgetFamily::accessoryCircular;
  if (kind == "OTDComposeWidget" || kind == "StreakWidget") return views::WidgetFamily::systemMedium;
  return views::WidgetFamily::systemSmall;
}

// The worker forks its keeper before this process touches the journal, so no
// SQLite state of this process reaches the children.
worker::WidgetWorker& sharedWorker() {
  static worker::WidgetWorker* worker = [] {
    ensureJournal();
    return new worker::WidgetWorker(worker::WorkerOptions{});
  }();
  return *worker;
}

template <typename Value>
void requireAnswer(const worker::Evaluation<Value>& evaluation, benchmark::State& state) {
  if (const auto* failure = evaluation.failure()) state.SkipWithError(failure->reason.c_str());
}

void BM_WarmTimeline(benchmark::State& state, const std::string& kind) {
  auto& worker = sharedWorker();
  const worker::TimelineEvaluation evaluation{.kind = kind, .at = benchNow(), .settings = settings()};
  for (auto _ : state) requireAnswer(worker.timeline(evaluation), state);
}

void BM_WarmView(benchmark::State& state, const std::string& kind) {
  auto& worker = sharedWorker();
  views::Environment environment;
  environment.family = familyOf(kind);
  const worker::ViewEvaluation evaluation{
      .kind = kind, .entryDate = benchNow(), .at = benchNow(), .environment = environment, .settings = settings()};
  std::int64_t peakKilobytes = 0;
  for (auto _ : state) {
    auto answer = worker.view(evaluation);
    peakKilobytes = std::max(peakKilobytes, answer.cost.peakKilobytes);
    requireAnswer(answer, state);
  }
  // The evaluating child's peak, held to 30 MB; it starts at the warm worker's resident size.
  state.counters["childPeakRSS_MB"] = static_cast<double>(peakKilobytes) / 1024;
}

// One read of every note, in this process: what no widget can go below.
void BM_ScanFloor(benchmark::State& state) {
  sharedWorker();
  platform::FileManager::setGroupContainerDirectory(groupDirectory());
  platform::FileManager::setApplicationSupportDirectory(supportDirectory());
  platform::Locale::setCurrent(*platform::Locale::named(kLocale));
  platform::TimeZone::setCurrent(*platform::TimeZone::named(kTimeZone));
  platform::Clock::pin(benchNow());
  for (auto _ : state) benchmark::DoNotOptimize(widgets::fetchAllNotes());
}

// One scan of the note dates by SQLite on a fresh read-only connection, the
// statement the command-line floor runs: the scan every view has to make.
void BM_DateScanFloor(benchmark::State& state) {
  sharedWorker();  // builds the journal on a first run
  const auto journal = (groupDirectory() / "Quillan.sqlite").string();
  for (auto _ : state) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(journal.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
      state.SkipWithError(sqlite3_errmsg(database));
      sqlite3_close(database);
      return;
    }
    // The scan needs no cache: without this, glibc hands the default 2 MB
    // back at each close and faults it in again at the next open, which
    // makes the floor 12 to 21 ms depending on what ran before it.
    sqlite3_exec(database, "PRAGMA cache_size = -128", nullptr, nullptr, nullptr);
    sqlite3_stmt* count = nullptr;
    sqlite3_prepare_v2(database, "SELECT count(*) FROM ZNOTE WHERE ZDATE > 0", -1, &count, nullptr);
    if (count && sqlite3_step(count) == SQLITE_ROW) benchmark::DoNotOptimize(sqlite3_column_int64(count, 0));
    sqlite3_finalize(count);
    sqlite3_close(database);
  }
}

const bool kRegistered = [] {
  for (const auto* kind : kKinds) {
    benchmark::RegisterBenchmark((std::string("BM_WarmTimeline/") + kind).c_str(), BM_WarmTimeline, std::string(kind))
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark((std::string("BM_WarmView/") + kind).c_str(), BM_WarmView, std::string(kind))
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
  }
  benchmark::RegisterBenchmark("BM_ScanFloor", BM_ScanFloor)->Unit(benchmark::kMillisecond)->UseRealTime();
  benchmark::RegisterBenchmark("BM_DateScanFloor", BM_DateScanFloor)->Unit(benchmark::kMillisecond)->UseRealTime();
  return true;
}();

}  // namespace

BENCHMARK_MAIN();
