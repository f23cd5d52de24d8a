#include <gtest/gtest.h>

#include <set>

#include "compose/WritingPrompts.hpp"
#include "platform/RandomSource.hpp"

namespace quillan::compose {
namespace {

// The draw itself is tested with the random source; this is the choice over
// the whole list.
TEST(WritingPrompts, EveryPromptCanBeChosen) {
  const std::vector<std::string> prompts = {"a", "b", "c", "d", "e"};
  platform::RandomSource::seed(7);
  std::set<std::string> chosen;
  for (int i = 0; i < 1000; ++i) chosen.insert(pickPrompt(prompts));
  platform::RandomSource::useSystem();
  EXPECT_EQ(chosen.size(), prompts.size());
}

TEST(WritingPromptsDeathTest, EmptyListStops) {
  EXPECT_DEATH(pickPrompt({}), "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

}  // namespace
}  // namespace quillan::compose
