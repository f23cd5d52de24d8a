#include <gtest/gtest.h>

#include <map>

#include "compose/WritingPrompts.hpp"
#include "platform/RandomSource.hpp"

namespace quillan::compose {
namespace {

const std::vector<std::string> kPrompts = {"What happened today?", "How's your day going?", "What's on your mind?",
                                           "This is your personal space", "Write about your day"};

TEST(WritingPrompts, SeededChoiceIsReproducible) {
  platform::RandomSource::seed(42);
  std::vector<std::string> first;
  for (int i = 0; i < 20; ++i) first.push_back(pickPrompt(kPrompts));
  platform::RandomSource::seed(42);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(pickPrompt(kPrompts), first[i]);
  platform::RandomSource::useSystem();
}

TEST(WritingPrompts, ChoiceIsUniformWithinABound) {
  platform::RandomSource::seed(7);
  constexpr int kDraws = 50'000;
  std::map<std::string, int> counts;
  for (int i = 0; i < kDraws; ++i) ++counts[pickPrompt(kPrompts)];
  platform::RandomSource::useSystem();
  ASSERT_EQ(counts.size(), kPrompts.size());
  // Expected 10,000 each; a standard deviation is about 89, so 5% is > 5 sigma.
  for (const auto& [prompt, count] : counts) {
    EXPECT_NEAR(count, kDraws / 5, kDraws / 5 * 0.05) << prompt;
  }
}

TEST(WritingPromptsDeathTest, EmptyListStops) {
  EXPECT_DEATH(pickPrompt({}), "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

}  // namespace
}  // namespace quillan::compose
