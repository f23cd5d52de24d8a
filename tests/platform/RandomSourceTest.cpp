#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platform/RandomSource.hpp"

namespace quillan::platform {
namespace {

class RandomSourceTest : public ::testing::Test {
 protected:
  void TearDown() override { RandomSource::useSystem(); }
};

std::vector<std::uint64_t> draws(std::size_t count) {
  std::vector<std::uint64_t> values;
  for (std::size_t i = 0; i < count; ++i) values.push_back(RandomSource::next());
  return values;
}

// The seeded generator is SplitMix64; its published outputs for seed 0 pin the
// algorithm, since seeded snapshots must stay reproducible across versions.
TEST_F(RandomSourceTest, ASeedReproducesSplitMix64UntilTheSystemSourceIsUsedAgain) {
  RandomSource::seed(0);
  EXPECT_EQ(draws(3),
            (std::vector<std::uint64_t>{0xE220A8397B1DCDAFULL, 0x6E789E6AA1B965F4ULL, 0x06C45D188009454FULL}));
  RandomSource::seed(42);
  const auto first = draws(16);
  EXPECT_NE(first.front(), 0xE220A8397B1DCDAFULL);
  RandomSource::seed(42);
  EXPECT_EQ(draws(16), first);
  RandomSource::seed(42);
  RandomSource::useSystem();
  EXPECT_NE(draws(16), first);
}

// Five prompts drawn 100,000 times: a chi-square above 18.47 (4 degrees of
// freedom, p = 0.001) would show a biased choice.
TEST_F(RandomSourceTest, NextBelowIsUniformOverFiveValues) {
  for (bool seeded : {true, false}) {
    if (seeded) RandomSource::seed(2026);
    else RandomSource::useSystem();
    constexpr int kDraws = 100'000;
    std::array<int, 5> counts{};
    for (int i = 0; i < kDraws; ++i) ++counts.at(RandomSource::nextBelow(5));
    double chiSquare = 0;
    for (int count : counts) {
      const double expected = kDraws / 5.0;
      chiSquare += (count - expected) * (count - expected) / expected;
    }
    EXPECT_LT(chiSquare, 18.47) << (seeded ? "seeded" : "system");
  }
}

// Values stay below the bound. With a bound of 2^63 + 1 about half of all words fall in the biased zone
// ((2^64 - n) mod n = 2^63 - 1), so each value costs about two draws; a choice
// without the rejection would cost exactly one.
TEST_F(RandomSourceTest, NextBelowRedrawsInTheBiasedZone) {
  const std::uint64_t bound = (1ULL << 63) + 1;
  constexpr int kValues = 2000;
  RandomSource::seed(5);
  const auto stream = draws(4 * kValues);
  RandomSource::seed(5);
  for (int i = 0; i < kValues; ++i) ASSERT_LT(RandomSource::nextBelow(bound), bound);
  const auto following = RandomSource::next();
  std::size_t consumed = 0;
  while (consumed < stream.size() && stream[consumed] != following) ++consumed;
  EXPECT_GT(consumed, kValues * 1.8);
  EXPECT_LT(consumed, kValues * 2.2);
}

}  // namespace
}  // namespace quillan::platform
