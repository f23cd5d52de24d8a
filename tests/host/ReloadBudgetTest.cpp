#include <gtest/gtest.h>

#include <stdexcept>

#include "host/ReloadBudget.hpp"

namespace quillan::host {
namespace {

using platform::Date;

constexpr double kHour = 3600;
constexpr double kDay = 24 * kHour;

Date seconds(double value) { return Date::fromReferenceSeconds(value); }

TEST(RollingWindow, AnInstantCountsForExactlyTwentyFourHours) {
  RollingWindow window;
  window.record(seconds(0));
  EXPECT_EQ(window.countAt(seconds(0)), 1u);
  EXPECT_EQ(window.countAt(seconds(kDay - 0.001)), 1u);
  EXPECT_EQ(window.countAt(seconds(kDay)), 0u);
  EXPECT_EQ(window.countAt(seconds(-1)), 0u) << "not yet happened";
}

TEST(RollingWindow, TheFirstMomentBelowALimitIsWhenTheOldestSurplusLeaves) {
  RollingWindow window;
  for (const double hour : {1.0, 2.0, 3.0, 4.0}) window.record(seconds(hour * kHour));
  const auto now = seconds(5 * kHour);
  EXPECT_EQ(window.firstMomentBelow(5, now), now);
  EXPECT_EQ(window.firstMomentBelow(4, now), seconds(kDay + 1 * kHour));
  EXPECT_EQ(window.firstMomentBelow(2, now), seconds(kDay + 3 * kHour));
  EXPECT_EQ(window.firstMomentBelow(1, now), seconds(kDay + 4 * kHour));
  // Instants already out of the window do not count against the limit.
  EXPECT_EQ(window.firstMomentBelow(3, seconds(kDay + 1.5 * kHour)), seconds(kDay + 2 * kHour));
}

TEST(ReloadBudget, OnlyPolicyReloadsAndRetriesAreCharged) {
  ReloadBudget budget(2);
  const auto now = seconds(10 * kHour);
  for (const auto reason : {ReloadReason::placed, ReloadReason::app, ReloadReason::app, ReloadReason::environment,
                            ReloadReason::timeChange, ReloadReason::budgetDeferred}) {
    budget.record(reason, now);
  }
  EXPECT_EQ(budget.nextSlot(now), now);
  budget.record(ReloadReason::policy, now);
  budget.record(ReloadReason::retry, now);
  EXPECT_EQ(budget.nextSlot(now), now.addingTimeInterval(kDay));
  EXPECT_EQ(budget.countsAt(now), (ReloadCounts{.policy = 2, .app = 2, .system = 3, .budgetDeferred = 1}));
  EXPECT_EQ(budget.countsAt(now.addingTimeInterval(kDay)), ReloadCounts{});
}

TEST(ReloadBudget, LimitsOutsideOneToTenThousandAreRefused) {
  EXPECT_EQ(ReloadBudget().limit(), 70);
  EXPECT_NO_THROW(ReloadBudget(1));
  EXPECT_NO_THROW(ReloadBudget(ReloadBudget::kMaxLimit));
  EXPECT_THROW(ReloadBudget(0), std::invalid_argument);
  EXPECT_THROW(ReloadBudget(-5), std::invalid_argument);
  EXPECT_THROW(ReloadBudget(ReloadBudget::kMaxLimit + 1), std::invalid_argument);
}

}  // namespace
}  // namespace quillan::host
