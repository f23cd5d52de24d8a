#include <gtest/gtest.h>

#include <stdexcept>

#include "host/HostClock.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::host {
namespace {

using platform::Date;

Date seconds(const std::string& value) { return Date::fromReferenceSeconds(std::stod(value)); }

std::string secondsText(Date date) {
  std::ostringstream text;
  text << date.timeIntervalSinceReferenceDate();
  return text.str();
}

// "STEP | STEP ...", real time starting at 1000 s and moving only by `wait S`:
// pin S, faster RATE, live and wait change the clock; now, rate, mode and
// arrives S (the real time an instant arrives at) are answered in turn.
std::string clockAnswer(const std::string& steps) {
  Date real = Date::fromReferenceSeconds(1000);
  HostClock clock{[&real] { return real; }};
  std::string answers;
  quillan::testing::forEachStep(steps, [&](const std::vector<std::string>& step) {
    const auto argument = step.size() > 1 ? step[1] : "0";
    try {
      if (step[0] == "wait") real = real.addingTimeInterval(std::stod(argument));
      else if (step[0] == "pin") clock.pin(seconds(argument));
      else if (step[0] == "faster") clock.runFaster(std::stod(argument));
      else if (step[0] == "live") clock.goLive();
      else if (step[0] == "now") answers += " " + secondsText(clock.now());
      else if (step[0] == "rate") answers += " rate " + std::to_string(clock.rate());
      else if (step[0] == "mode")
        answers += clock.mode() == HostClock::Mode::live     ? " live"
                   : clock.mode() == HostClock::Mode::pinned ? " pinned"
                                                             : " running";
      else if (step[0] == "arrives") {
        const auto arrival = clock.realTimeOf(seconds(argument));
        answers += " " + (arrival ? secondsText(*arrival) : "never");
      }
    } catch (const std::invalid_argument& error) {
      answers += " (" + std::string(error.what()) + ")";
    }
  });
  return answers.empty() ? "" : answers.substr(1);
}

TEST(HostClockTest, LivePinnedAndFasterClocksKeepTimeContinuous) {
  quillan::testing::expectGoldenAnswers("host_clock.txt", clockAnswer);
}

}  // namespace
}  // namespace quillan::host
