#include "hosting/SampleJournalFiles.hpp"

#include <string>

#include "fixtures/SampleJournal.hpp"
#include "hosting/UsageError.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"

namespace quillan::hosting {
namespace {

// Sample journals are reproducible by default; --seed picks another one.
constexpr std::uint64_t kDefaultSampleSeed = 2026;
constexpr const char* kStoreFileName = "Quillan.sqlite";

}  // namespace

std::filesystem::path makeGroupContainerIn(const std::filesystem::path& folder) {
  const auto container = folder / "group.com.tarvelo.Quillan";
  std::filesystem::create_directories(container);
  return container;
}

std::filesystem::path writeSampleJournal(const std::filesystem::path& container, std::optional<std::uint64_t> seed) {
  for (const char* suffix : {"", "-wal", "-shm"}) {
    const auto existing = container / (std::string(kStoreFileName) + suffix);
    if (std::filesystem::exists(existing)) {
      throw badOption("--group-container", "not overwriting a journal", existing.string(),
                      "it already exists; choose an empty folder");
    }
  }
  return fixtures::SampleJournal::write(container, platform::Clock::now(), platform::Calendar::current(),
                                        seed.value_or(kDefaultSampleSeed));
}

}  // namespace quillan::hosting
