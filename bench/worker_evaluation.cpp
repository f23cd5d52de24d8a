// The live host's reload cost: each widget's timeline and view evaluated by a
// warm worker (a fresh child forked from a preloaded process per evaluation,
// reading the journal from scratch), beside the floor of one scan of the same
// 100,000-note journal in this process. Ratios against BM_ScanFloor are what
// to compare on a shared machine.
#include <benchmark/benchmark.h>

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
  for (auto _ : state) requireAnswer(worker.view(evaluation), state);
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
  return true;
}();

}  // namespace

BENCHMARK_MAIN();
