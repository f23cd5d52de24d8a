#include "audit/ProgressLine.hpp"

#include <string>

namespace quillan::audit {

namespace {

constexpr auto kProgressInterval = std::chrono::milliseconds(200);

std::string minutesAndSeconds(double seconds) {
  const auto whole = static_cast<long>(seconds + 0.5);
  const auto secondsPart = whole % 60;
  return std::to_string(whole / 60) + ":" + (secondsPart < 10 ? "0" : "") + std::to_string(secondsPart);
}

}  // namespace

ProgressLine::ProgressLine(std::ostream& out, bool shown, std::size_t cases)
    : out_(out), shown_(shown), cases_(cases) {}

void ProgressLine::update(std::size_t casesDone, std::size_t findings) {
  if (!shown_ || casesDone == 0) return;
  const auto now = Clock::now();
  if (now - lastWritten_ < kProgressInterval && casesDone < cases_) return;
  lastWritten_ = now;
  const double elapsed = std::chrono::duration<double>(now - started_).count();
  const double left = elapsed / static_cast<double>(casesDone) * static_cast<double>(cases_ - casesDone);
  out_ << "\r\033[K" << casesDone << " of " << cases_ << " cases, " << findings << " findings, "
       << minutesAndSeconds(left) << " left" << std::flush;
}

void ProgressLine::finish() {
  if (shown_) out_ << "\r\033[K" << std::flush;
}

}  // namespace quillan::audit
