#include <gtest/gtest.h>

#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"
#include "widgets/DailyProviders.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::widgets {
namespace {

using testing::ProcessEnvironment;

TEST(DailyProviders, TimelineIsOneEntryAtStartOfTodayReloadingAtStartOfTomorrow) {
  quillan::testing::expectGoldenAnswers("daily_timeline.txt", [](const std::string& question) {
    const auto args = quillan::testing::words(question);
    ProcessEnvironment environment(args[1], args[0], args[2]);
    const auto answer = askProvider(Provider{}, TimelineRequest::timeline);
    std::string text;
    for (const auto date : answer.entryDates) text += ProcessEnvironment::local(date) + " ";
    const bool after = answer.policy && answer.policy->kind() == TimelineReloadPolicy::Kind::after;
    return text + (after ? "after " + ProcessEnvironment::local(*answer.policy->date()) : "without a reload date");
  });
}

TEST(DailyProviders, SnapshotAndPlaceholderAreDatedNowWithoutPolicy) {
  ProcessEnvironment environment("2026-11-22T08:30:15.250+01:00", "Europe/Berlin");
  for (auto request : {TimelineRequest::snapshot, TimelineRequest::placeholder}) {
    const auto answer = askProvider(Provider{}, request);
    ASSERT_EQ(answer.entryDates.size(), 1u);
    EXPECT_EQ(answer.entryDates[0], platform::Clock::now());
    EXPECT_FALSE(answer.policy.has_value());
  }
}

}  // namespace
}  // namespace quillan::widgets
