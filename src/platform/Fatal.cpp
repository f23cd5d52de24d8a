#include "platform/Fatal.hpp"

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

void silentStop() {
  std::fflush(stdout);
  std::abort();
}

}  // namespace quillan::platform
