#include "platform/ExtensionLog.hpp"

#include <cstdio>
#include <mutex>
#include <string>

namespace quillan::platform {
namespace {

std::mutex& sinkMutex() {
  static std::mutex mutex;
  return mutex;
}

ExtensionLog::Sink& currentSink() {
  static ExtensionLog::Sink sink;
  return sink;
}

}  // namespace

void ExtensionLog::print(std::string_view line) {
  std::lock_guard lock(sinkMutex());
  if (auto& sink = currentSink()) {
    sink(line);
    return;
  }
  std::string whole(line);
  whole.push_back('\n');
  std::fputs(whole.c_str(), stdout);
  std::fflush(stdout);
}

void ExtensionLog::setSink(Sink sink) {
  std::lock_guard lock(sinkMutex());
  currentSink() = std::move(sink);
}

}  // namespace quillan::platform
