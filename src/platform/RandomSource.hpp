#pragma once

#include <cstdint>
#include <optional>

namespace quillan::platform {

// The process's source of random 64-bit words: the system's (getrandom) unless
// the host seeds a deterministic generator (--seed) to reproduce snapshots.
class RandomSource {
 public:
  static std::uint64_t next();
  static void seed(std::uint64_t seed);
  static void useSystem();

  // A uniformly distributed value in [0, upperBound), upperBound > 0, by the
  // unbiased multiply-and-shift rule: the high word of next() * upperBound,
  // redrawing while the low word falls in the biased zone.
  static std::uint64_t nextBelow(std::uint64_t upperBound);
};

}  // namespace quillan::platform
