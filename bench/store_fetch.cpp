// Fetching every note of a 100,000-note journal whose notes carry images: the
// images must cost nothing, because fetches never read binary columns.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "fixtures/JournalWriter.hpp"
#include "platform/URL.hpp"
#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"

namespace {

using namespace quillan;

constexpr int kNotes = 100000;

const std::filesystem::path& journalPath() {
  static const std::filesystem::path path = [] {
    const auto directory = std::filesystem::temp_directory_path() / ("quillan-bench-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory);
    const auto file = directory / "Quillan.sqlite";
    fixtures::JournalWriter writer(file);
    writer.begin();
    const fixtures::Bytes image(16 * 1024, 0x89);
    for (int i = 0; i < kNotes; ++i) {
      const auto note = writer.addNote({.date = platform::Date::fromReferenceSeconds(700000000.0 + i * 3600.0),
                                        .info = "A day like any other, note " + std::to_string(i)});
      if (i % 20 == 0) writer.addImage({.owner = note, .imgData = image});
    }
    writer.commit();
    std::atexit([] { std::filesystem::remove_all(journalPath().parent_path()); });
    return file;
  }();
  return path;
}

std::shared_ptr<store::ManagedObjectContext> makeContext() {
  auto coordinator = std::make_shared<store::PersistentStoreCoordinator>();
  coordinator->addPersistentStore(platform::URL::fileURL(journalPath()), store::kSQLiteStoreType);
  return std::make_shared<store::ManagedObjectContext>(coordinator);
}

void FetchAllNotes(benchmark::State& state) {
  auto context = makeContext();
  for (auto _ : state) {
    auto notes = context->fetch(store::Note::fetchRequest());
    benchmark::DoNotOptimize(notes);
    if (!notes.ok() || notes.value().size() != kNotes) state.SkipWithError("wrong fetch result");
  }
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  state.counters["peakRSS_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  state.counters["journal_MB"] = static_cast<double>(std::filesystem::file_size(journalPath())) / 1e6;
}
BENCHMARK(FetchAllNotes)->Unit(benchmark::kMillisecond);

// The same fetch while results are still held: objects are refreshed in place.
void RefetchWithLiveObjects(benchmark::State& state) {
  auto context = makeContext();
  auto held = context->fetch(store::Note::fetchRequest());
  for (auto _ : state) {
    auto notes = context->fetch(store::Note::fetchRequest());
    benchmark::DoNotOptimize(notes);
  }
}
BENCHMARK(RefetchWithLiveObjects)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
