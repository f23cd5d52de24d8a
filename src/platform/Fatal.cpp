#include "platform/Fatal.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace quillan::platform {

void fatalError(std::string_view source, std::string_view message) {
  std::string report;
  report.append(source).append(": Fatal error: ").append(message).append("\n");
  std::fputs(report.c_str(), stderr);
  std::fflush(stderr);
  std::abort();
}

namespace {
std::atomic<void (*)()> silentStopNotice = nullptr;
}  // namespace

void setSilentStopNotice(void (*notice)()) { silentStopNotice = notice; }

void silentStop() {
  std::fflush(stdout);
  if (const auto notice = silentStopNotice.load()) notice();
  std::abort();
}

}  // namespace quillan::platform
