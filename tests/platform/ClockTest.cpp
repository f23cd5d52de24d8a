#include <gtest/gtest.h>

#include <chrono>

#include "platform/Clock.hpp"

namespace quillan::platform {
namespace {

TEST(Clock, PinnedClockHoldsStillAndUnpinnedFollowsTheSystem) {
  const auto pinned = Date::fromReferenceSeconds(800'000'000.5);
  Clock::pin(pinned);
  EXPECT_EQ(Clock::now(), pinned);
  EXPECT_EQ(Clock::pinned(), pinned);
  Clock::unpin();
  EXPECT_FALSE(Clock::pinned().has_value());
  const std::chrono::duration<double> system = std::chrono::system_clock::now().time_since_epoch();
  EXPECT_NEAR(Clock::now().unixSeconds(), system.count(), 5.0);
}

}  // namespace
}  // namespace quillan::platform
