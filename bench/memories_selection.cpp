// Memory selection over a 100,000-note journal, as the widgets run it: every
// note fetched and its month and day formatted, several times per render --
// and the views' path, which fetches once and formats once per local day.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "memories/MatchingDays.hpp"
#include "memories/MemorySelection.hpp"
#include "memories/MemorySnapshot.hpp"
#include "memories/OTDComposeMediumView.hpp"
#include "memories/OTDSmallView.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "platform/TimeZone.hpp"
#include "widgets/AllNotes.hpp"

namespace {

using namespace quillan;

constexpr int kNotes = 100000;

// One note an hour for about eleven years before now: some twenty-four
// memories in each earlier year.
void prepareJournal() {
  static const bool prepared = [] {
    const auto root = std::filesystem::temp_directory_path() / ("quillan-bench-memories-" + std::to_string(::getpid()));
    std::filesystem::create_directories(root / "group");
    std::filesystem::create_directories(root / "support");
    platform::FileManager::setGroupContainerDirectory(root / "group");
    platform::FileManager::setApplicationSupportDirectory(root / "support");
    platform::TimeZone::setCurrent(*platform::TimeZone::named("Europe/Berlin"));
    platform::Locale::setCurrent(*platform::Locale::named("en_US"));
    const auto now = *platform::ISO8601::parse("2026-11-16T12:00:00+01:00");
    platform::Clock::pin(now);
    platform::RandomSource::seed(1);

    fixtures::JournalWriter writer(root / "group" / "Quillan.sqlite");
    writer.begin();
    for (int i = 0; i < kNotes; ++i) {
      writer.addNote({.date = now.addingTimeInterval(-3600.0 * (kNotes - i)),
                      .info = "A day like **any** other, note " + std::to_string(i)});
    }
    writer.commit();
    writer.close();
    std::atexit([] {
      std::filesystem::remove_all(std::filesystem::temp_directory_path() /
                                  ("quillan-bench-memories-" + std::to_string(::getpid())));
    });
    return true;
  }();
  benchmark::DoNotOptimize(prepared);
}

void FetchAllNotes(benchmark::State& state) {
  prepareJournal();
  for (auto _ : state) benchmark::DoNotOptimize(widgets::fetchAllNotes());
}
BENCHMARK(FetchAllNotes)->Unit(benchmark::kMillisecond);

void FetchMemories(benchmark::State& state) {
  prepareJournal();
  for (auto _ : state) {
    auto memories = memories::fetchMemories();
    if (memories.empty()) state.SkipWithError("no memories in the journal");
    benchmark::DoNotOptimize(memories);
  }
}
BENCHMARK(FetchMemories)->Unit(benchmark::kMillisecond);

// The views' path: one fetch, month and day formatted once per local day.
void MemorySnapshotTake(benchmark::State& state) {
  prepareJournal();
  for (auto _ : state) benchmark::DoNotOptimize(memories::MemorySnapshot::take());
}
BENCHMARK(MemorySnapshotTake)->Unit(benchmark::kMillisecond);

// What the views' read works out before it scans: the dates it can keep.
void MatchingDays(benchmark::State& state) {
  prepareJournal();
  for (auto _ : state) {
    memories::MonthAndDayTexts texts;
    benchmark::DoNotOptimize(memories::matchingDays(platform::Clock::now(), texts));
  }
}
BENCHMARK(MatchingDays)->Unit(benchmark::kMicrosecond);

void IsOnThisDayPerNote(benchmark::State& state) {
  prepareJournal();
  const auto notes = widgets::fetchAllNotes();
  std::size_t index = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(memories::isOnThisDay(*notes[index]));
    index = (index + 1) % notes.size();
  }
}
BENCHMARK(IsOnThisDayPerNote)->Unit(benchmark::kNanosecond);

void OTDSmallViewBody(benchmark::State& state) {
  prepareJournal();
  const views::Environment environment;
  for (auto _ : state) benchmark::DoNotOptimize(memories::OTDSmallView(environment).body(environment));
}
BENCHMARK(OTDSmallViewBody)->Unit(benchmark::kMillisecond);

void OTDComposeMediumViewBody(benchmark::State& state) {
  prepareJournal();
  views::Environment environment;
  environment.family = views::WidgetFamily::systemMedium;
  for (auto _ : state) benchmark::DoNotOptimize(memories::OTDComposeMediumView(environment).body(environment));
}
BENCHMARK(OTDComposeMediumViewBody)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
