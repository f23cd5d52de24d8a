#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "host/HostClock.hpp"

namespace quillan::host {
namespace {

using platform::Date;

Date seconds(double value) { return Date::fromReferenceSeconds(value); }

// Real time that moves only when a test says so.
class HostClockTest : public ::testing::Test {
 protected:
  Date real = seconds(1000);
  HostClock clock{[this] { return real; }};
  void wait(double realSeconds) { real = real.addingTimeInterval(realSeconds); }
};

TEST_F(HostClockTest, LiveFollowsRealTime) {
  EXPECT_EQ(clock.mode(), HostClock::Mode::live);
  wait(42);
  EXPECT_EQ(clock.now(), seconds(1042));
  EXPECT_EQ(clock.realTimeOf(seconds(1100)), seconds(1100));
}

TEST_F(HostClockTest, PinnedStandsStillAndNeverReachesLaterInstants) {
  clock.pin(seconds(5000));
  wait(3600);
  EXPECT_EQ(clock.now(), seconds(5000));
  EXPECT_EQ(clock.rate(), 0.0);
  EXPECT_FALSE(clock.realTimeOf(seconds(5000.5)));
  EXPECT_EQ(clock.realTimeOf(seconds(5000)), seconds(1000)) << "arrived when it was pinned";
}

TEST_F(HostClockTest, RunningFasterStartsWhereTheClockStands) {
  clock.pin(seconds(5000));
  wait(10);
  clock.runFaster(60);
  EXPECT_EQ(clock.now(), seconds(5000));
  wait(2);
  EXPECT_EQ(clock.now(), seconds(5120));
  // An hour of virtual time arrives a minute of real time after the anchor.
  EXPECT_EQ(clock.realTimeOf(seconds(8600)), seconds(1070));
  EXPECT_EQ(clock.realTimeOf(seconds(4940)), seconds(1009)) << "already passed";
}

TEST_F(HostClockTest, ChangingTheRateMidRunKeepsTimeContinuous) {
  clock.runFaster(100);
  wait(10);
  ASSERT_EQ(clock.now(), seconds(2000));
  clock.runFaster(2);
  EXPECT_EQ(clock.now(), seconds(2000));
  wait(5);
  EXPECT_EQ(clock.now(), seconds(2010));
  EXPECT_EQ(clock.realTimeOf(seconds(2030)), seconds(1025));

  clock.goLive();
  EXPECT_EQ(clock.mode(), HostClock::Mode::live);
  EXPECT_EQ(clock.now(), real) << "live is the real time, not the virtual time reached";
}

TEST_F(HostClockTest, RejectsRatesAndInstantsItCannotRun) {
  for (const double rate : {0.0, -1.0, HostClock::kMaxRate * 2, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(clock.runFaster(rate), std::invalid_argument) << rate;
  }
  EXPECT_NO_THROW(clock.runFaster(HostClock::kMaxRate));
  EXPECT_THROW(clock.pin(seconds(std::numeric_limits<double>::infinity())), std::invalid_argument);
  EXPECT_EQ(clock.mode(), HostClock::Mode::running);

  try {
    clock.runFaster(-3);
    FAIL();
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "clock rate must be above 0 and at most 1e+06, got -3");
  }
}

}  // namespace
}  // namespace quillan::host
