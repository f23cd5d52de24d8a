#include "worker/FailureReason.hpp"

#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <vector>

namespace quillan::worker {
namespace {

constexpr std::string_view kFatalMarker = ": Fatal error: ";
constexpr std::int64_t kMebibyte = 1024 * 1024;

std::vector<std::string_view> nonBlankLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    auto line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.find_first_not_of(" \t") != std::string_view::npos) lines.push_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::string withLastLine(std::string reason, std::string_view stderrText) {
  const auto lines = nonBlankLines(stderrText);
  if (!lines.empty()) reason.append(": ").append(lines.back());
  return reason;
}

std::string trimmedDecimal(double value, int decimals) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  std::string text = buffer;
  if (text.find('.') != std::string::npos) {
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
  }
  return text;
}

std::string memoryReason(const ChildEnd& end, const FailureLimits& limits) {
  return "exceeded the memory ceiling of " + megabytesText(limits.memoryCeilingBytes) + " MB (peak " +
         megabytesText(end.peakKilobytes * 1024) + " MB)";
}

}  // namespace

std::optional<std::string> fatalReport(std::string_view stderrText) {
  const auto lines = nonBlankLines(stderrText);
  for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
    if (line->find(kFatalMarker) != std::string_view::npos) return std::string(*line);
  }
  return std::nullopt;
}

std::string secondsText(std::chrono::milliseconds duration) {
  return trimmedDecimal(static_cast<double>(duration.count()) / 1000.0, 3);
}

std::string megabytesText(std::int64_t bytes) {
  const auto tenths = (bytes * 10 + kMebibyte - 1) / kMebibyte;
  return trimmedDecimal(static_cast<double>(tenths) / 10.0, 1);
}

std::optional<std::string> failureReason(const ChildEnd& end, const FailureLimits& limits) {
  switch (end.killedFor) {
    case ChildKill::deadline: return "exceeded the deadline of " + secondsText(limits.deadline) + " s";
    case ChildKill::memory: return memoryReason(end, limits);
    case ChildKill::oversizedAnswer: return "answered with more than the 16 MB a worker message may hold";
    case ChildKill::none: break;
  }
  if (end.peakKilobytes * 1024 > limits.memoryCeilingBytes) return memoryReason(end, limits);
  if (WIFEXITED(end.waitStatus) && WEXITSTATUS(end.waitStatus) == 0 && end.answered) {
    if (end.exception) return "stopped by an uncaught error: " + *end.exception;
    return std::nullopt;
  }
  if (auto report = fatalReport(end.stderrText)) return report;
  if (WIFSIGNALED(end.waitStatus)) {
    const int signal = WTERMSIG(end.waitStatus);
    if (signal == SIGABRT && nonBlankLines(end.stderrText).empty()) return "stopped without a message";
    return withLastLine("killed by signal " + std::to_string(signal), end.stderrText);
  }
  if (WIFEXITED(end.waitStatus) && WEXITSTATUS(end.waitStatus) != 0) {
    return withLastLine("exited with status " + std::to_string(WEXITSTATUS(end.waitStatus)), end.stderrText);
  }
  return "stopped without a message";
}

}  // namespace quillan::worker
