#include "cli/SampleJournalFiles.hpp"

#include <cstdlib>
#include <string>

#include "fixtures/SampleJournal.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"

namespace quillan::cli {
namespace {

// Sample journals are reproducible by default; --seed picks another one.
constexpr std::uint64_t kDefaultSampleSeed = 2026;
constexpr const char* kStoreFileName = "Quillan.sqlite";

}  // namespace

std::filesystem::path makeTemporaryGroupContainer() {
  auto pattern = (std::filesystem::temp_directory_path() / "quillan-widgets-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw UsageError("cannot create a temporary folder in " + pattern);
  const auto container = std::filesystem::path(pattern) / "group.com.tarvelo.Quillan";
  std::filesystem::create_directories(container);
  return container;
}

std::filesystem::path writeSampleJournal(const std::filesystem::path& container, const HostOptions& host) {
  for (const char* suffix : {"", "-wal", "-shm"}) {
    const auto existing = container / (std::string(kStoreFileName) + suffix);
    if (std::filesystem::exists(existing)) {
      throw UsageError("--group-container: " + existing.string() +
                       " already exists; not overwriting a journal (choose an empty folder)");
    }
  }
  return fixtures::SampleJournal::write(container, platform::Clock::now(), platform::Calendar::current(),
                                        host.seed.value_or(kDefaultSampleSeed));
}

}  // namespace quillan::cli
