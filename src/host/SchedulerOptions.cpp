#include "host/SchedulerOptions.hpp"

#include <cmath>
#include <sstream>
#include <stdexcept>

namespace quillan::host {
namespace {

constexpr double kDaySeconds = 24 * 3600.0;

void checkSeconds(const char* name, double value, double lowest, double highest) {
  if (std::isfinite(value) && value >= lowest && value <= highest) return;
  std::ostringstream message;
  message << name << " must be between " << lowest << " and " << highest << " seconds, got " << value;
  throw std::invalid_argument(message.str());
}

}  // namespace

void checkSchedulerOptions(const SchedulerOptions& options) {
  ReloadBudget{options.reloadBudget};
  checkSeconds("minimum reload interval", options.minimumReloadInterval, 1.0, kDaySeconds);
  checkSeconds("longest retry delay", options.maxRetryDelay, options.minimumReloadInterval, kDaySeconds);
}

}  // namespace quillan::host
