// One evaluation of the streak face over a 100,000-note journal, against the
// five whole-journal fetches a build makes when each circle fetches alone.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "fixtures/JournalWriter.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakDays.hpp"
#include "streak/StreakMediumView.hpp"
#include "widgets/AllNotes.hpp"

namespace {

using namespace quillan;

constexpr int kNotes = 100'000;
// Every 40 minutes backwards from just before now: about 7.6 years, and notes
// on every one of the five days shown.
constexpr double kNow = 800'000'000.0;
constexpr double kSpacing = 40 * 60.0;

const std::filesystem::path& groupContainer() {
  static const std::filesystem::path directory = [] {
    const auto root = std::filesystem::temp_directory_path() / ("quillan-bench-streak-" + std::to_string(::getpid()));
    std::filesystem::create_directories(root / "group");
    std::filesystem::create_directories(root / "support");
    platform::FileManager::setGroupContainerDirectory(root / "group");
    platform::FileManager::setApplicationSupportDirectory(root / "support");
    fixtures::JournalWriter writer(root / "group" / "Quillan.sqlite");
    writer.begin();
    for (int i = 0; i < kNotes; ++i) {
      writer.addNote({.date = platform::Date::fromReferenceSeconds(kNow - 60.0 - i * kSpacing),
                      .info = "A day like any other, note " + std::to_string(i)});
    }
    writer.commit();
    std::atexit([] { std::filesystem::remove_all(groupContainer().parent_path()); });
    return root / "group";
  }();
  return directory;
}

void setUpProcess() {
  groupContainer();
  platform::Locale::setCurrent(*platform::Locale::named("en_US"));
  platform::TimeZone::setCurrent(*platform::TimeZone::named("Europe/Berlin"));
  platform::Clock::pin(platform::Date::fromReferenceSeconds(kNow));
}

void BM_StreakMediumViewBody100kNotes(benchmark::State& state) {
  setUpProcess();
  views::Environment environment;
  environment.family = views::WidgetFamily::systemMedium;
  const streak::StreakMediumView view(environment, {-4, -3, -2, -1});
  for (auto _ : state) benchmark::DoNotOptimize(view.body(environment));
}

void BM_FivePerDayPresenceTests100kNotes(benchmark::State& state) {
  setUpProcess();
  for (auto _ : state) {
    int written = 0;
    for (const auto offset : streak::kPastDateRange) written += streak::hasNotes(streak::dayMoment(offset)) ? 1 : 0;
    written += streak::hasNotes(platform::Clock::now()) ? 1 : 0;
    benchmark::DoNotOptimize(written);
  }
}

// The day test alone over notes already fetched: what the circles add to the fetch.
void BM_PresenceOverFetchedNotes100kNotes(benchmark::State& state) {
  setUpProcess();
  const auto notes = widgets::fetchAllNotes();
  for (auto _ : state) benchmark::DoNotOptimize(streak::hasNotes(notes, streak::dayMoment(-2)));
}

BENCHMARK(BM_StreakMediumViewBody100kNotes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FivePerDayPresenceTests100kNotes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PresenceOverFetchedNotes100kNotes)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
