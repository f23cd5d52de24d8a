#include "cli/SampleJournalFiles.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

#include "cli/QuotedValue.hpp"

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
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot create a temporary folder " + quotedValue(pattern) + ": " + std::strerror(errno));
  }
  const auto container = std::filesystem::path(pattern) / "group.com.tarvelo.Quillan";
  std::filesystem::create_directories(container);
  return container;
}

std::filesystem::path writeSampleJournal(const std::filesystem::path& container, const HostOptions& host) {
  for (const char* suffix : {"", "-wal", "-shm"}) {
    const auto existing = container / (std::string(kStoreFileName) + suffix);
    if (std::filesystem::exists(existing)) {
      throw badOption("--group-container", "not overwriting a journal", existing.string(),
                      "it already exists; choose an empty folder");
    }
  }
  return fixtures::SampleJournal::write(container, platform::Clock::now(), platform::Calendar::current(),
                                        host.seed.value_or(kDefaultSampleSeed));
}

}  // namespace quillan::cli
