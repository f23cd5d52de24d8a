#include <gtest/gtest.h>

#include <stdexcept>

#include "host/ReloadBudget.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::host {
namespace {

using platform::Date;

constexpr double kHour = 3600;

// Instants as the tests write them: hours, "d+" for a day later.
Date hours(std::string text) {
  const double day = text.starts_with("d+") ? 24 : 0;
  if (day > 0) text = text.substr(2);
  return Date::fromReferenceSeconds((day + std::stod(text)) * kHour);
}

ReloadReason reasonNamed(const std::string& name) {
  for (int reason = 0; reason <= static_cast<int>(ReloadReason::timeChange); ++reason) {
    if (reloadReasonName(static_cast<ReloadReason>(reason)) == name) return static_cast<ReloadReason>(reason);
  }
  throw std::invalid_argument("no reload reason " + name);
}

// "STEP | STEP ..." on a window (record H, count H, below LIMIT H: the first
// moment under LIMIT from H) or on a budget of 2 (charge REASON H, slot H,
// counts H).
std::string budgetAnswer(const std::string& steps) {
  RollingWindow window;
  ReloadBudget budget(2);
  std::string answers;
  quillan::testing::forEachStep(steps, [&](const std::vector<std::string>& step) {
    const auto hoursText = [](Date date) { return std::to_string(date.timeIntervalSinceReferenceDate() / kHour); };
    if (step[0] == "record") window.record(hours(step[1]));
    else if (step[0] == "count") answers += " " + std::to_string(window.countAt(hours(step[1])));
    else if (step[0] == "below")
      answers += " " + hoursText(window.firstMomentBelow(std::stoul(step[1]), hours(step[2])));
    else if (step[0] == "charge") budget.record(reasonNamed(step[1]), hours(step[2]));
    else if (step[0] == "slot") answers += " " + hoursText(budget.nextSlot(hours(step[1])));
    else if (step[0] == "counts") {
      const auto counts = budget.countsAt(hours(step[1]));
      answers += " " + std::to_string(counts.policy) + "/" + std::to_string(counts.app) + "/" +
                 std::to_string(counts.system) + "/" + std::to_string(counts.budgetDeferred);
    }
  });
  return answers.empty() ? "" : answers.substr(1);
}

TEST(ReloadBudget, ChargedReloadsCountForExactlyTwentyFourHours) {
  quillan::testing::expectGoldenAnswers("reload_budget.txt", budgetAnswer);
}

}  // namespace
}  // namespace quillan::host
