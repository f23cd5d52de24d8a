#include "platform/RandomSource.hpp"

#include <sys/random.h>

#include <cerrno>
#include <cstring>
#include <mutex>
#include <string>

#include "platform/Fatal.hpp"

namespace quillan::platform {
namespace {

// SplitMix64 (Steele, Lea, Flood): one 64-bit word of state, every seed is
// valid, and the sequence for a seed is fixed here for good, because seeded
// snapshots are compared across runs and versions.
class SplitMix64 {
 public:
  explicit SplitMix64(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }

 private:
  std::uint64_t state_;
};

std::uint64_t systemWord() {
  std::uint64_t word = 0;
  auto* bytes = reinterpret_cast<unsigned char*>(&word);
  std::size_t filled = 0;
  while (filled < sizeof word) {
    const ssize_t got = getrandom(bytes + filled, sizeof word - filled, 0);
    if (got < 0) {
      if (errno == EINTR) continue;
      fatalError("RandomSource", std::string("getrandom failed: ") + std::strerror(errno));
    }
    filled += static_cast<std::size_t>(got);
  }
  return word;
}

struct State {
  std::mutex mutex;
  std::optional<SplitMix64> seeded;
};

State& state() {
  static State instance;
  return instance;
}

}  // namespace

std::uint64_t RandomSource::next() {
  auto& source = state();
  {
    const std::lock_guard lock(source.mutex);
    if (source.seeded) return source.seeded->next();
  }
  return systemWord();
}

void RandomSource::seed(std::uint64_t seed) {
  auto& source = state();
  const std::lock_guard lock(source.mutex);
  source.seeded.emplace(seed);
}

void RandomSource::useSystem() {
  auto& source = state();
  const std::lock_guard lock(source.mutex);
  source.seeded.reset();
}

std::uint64_t RandomSource::nextBelow(std::uint64_t upperBound) {
  if (upperBound == 0) fatalError("RandomSource", "upper bound must be positive");
  auto product = static_cast<unsigned __int128>(next()) * upperBound;
  if (static_cast<std::uint64_t>(product) < upperBound) {
    // Low words below (2^64 - n) mod n belong to values drawn once too often.
    const std::uint64_t threshold = (0 - upperBound) % upperBound;
    while (static_cast<std::uint64_t>(product) < threshold) {
      product = static_cast<unsigned __int128>(next()) * upperBound;
    }
  }
  return static_cast<std::uint64_t>(product >> 64);
}

}  // namespace quillan::platform
