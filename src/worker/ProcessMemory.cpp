#include "worker/ProcessMemory.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

namespace quillan::worker {
namespace {

// Read with plain system calls: this runs every few milliseconds in the warm
// worker's watch loop.
std::optional<std::int64_t> statusField(pid_t pid, std::string_view name) {
  const std::string path = "/proc/" + std::to_string(pid) + "/status";
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  char buffer[4096];
  const ssize_t size = read(fd, buffer, sizeof buffer - 1);
  close(fd);
  if (size <= 0) return std::nullopt;
  const std::string_view status(buffer, static_cast<std::size_t>(size));
  const std::string key = "\n" + std::string(name) + ":";
  const auto at = status.find(key);
  if (at == std::string_view::npos) return std::nullopt;
  buffer[size] = '\0';
  return std::strtoll(buffer + at + key.size(), nullptr, 10);
}

}  // namespace

std::optional<std::int64_t> peakResidentKilobytes(pid_t pid) { return statusField(pid, "VmHWM"); }

std::optional<std::int64_t> residentKilobytes(pid_t pid) { return statusField(pid, "VmRSS"); }

}  // namespace quillan::worker
