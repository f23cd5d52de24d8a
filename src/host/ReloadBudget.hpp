#pragma once

#include "host/ReloadReason.hpp"
#include "host/RollingWindow.hpp"
#include "platform/Date.hpp"

namespace quillan::host {

// A widget's reloads over the 24 hours up to now, by who caused them.
struct ReloadCounts {
  int policy = 0;          // charged: policy reloads and retries after a failure
  int app = 0;             // the app's "reload all timelines"
  int system = 0;          // the host's own free reloads: placement, environment, time change
  int budgetDeferred = 0;  // charged reloads that came due over budget and were held back

  bool operator==(const ReloadCounts&) const = default;
};

// One widget's reload budget: at most `limit` charged reloads in any rolling
// 24 hours (the phone grants a frequently viewed widget 40-70 a day; 70 is the
// default). Free reloads are counted apart and never use it up.
class ReloadBudget {
 public:
  static constexpr int kDefaultLimit = 70;
  // Above this the budget limits nothing a widget could sensibly ask for (a
  // reload every 9 s all day), and it bounds what the window keeps.
  static constexpr int kMaxLimit = 10000;

  // Throws std::invalid_argument for a limit outside 1...kMaxLimit.
  explicit ReloadBudget(int limit = kDefaultLimit);

  int limit() const { return limit_; }
  // The earliest instant from `at` on at which a charged reload fits the budget.
  platform::Date nextSlot(platform::Date at) const;
  void record(ReloadReason reason, platform::Date at);
  ReloadCounts countsAt(platform::Date now) const;
  // The clock was set back to `at`: reloads after it have not happened.
  void forgetAfter(platform::Date at);

 private:
  RollingWindow& windowFor(ReloadReason reason);

  int limit_;
  RollingWindow charged_;
  RollingWindow app_;
  RollingWindow system_;
  RollingWindow deferred_;
};

}  // namespace quillan::host
