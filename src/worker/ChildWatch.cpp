#include "worker/ChildWatch.hpp"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string>

#include "worker/MessageFraming.hpp"
#include "worker/Pidfd.hpp"
#include "worker/ProcessMemory.hpp"

namespace quillan::worker {
namespace {

// Enough for any fatal report and the lines before it; a child that writes
// more keeps only its last words.
constexpr std::size_t kStderrKeptBytes = 64 * 1024;

using Clock = std::chrono::steady_clock;

struct Stream {
  int fd;
  std::string* text;
  std::size_t keep;  // bytes kept at the end; the answer keeps one over the limit to notice it
  bool open = true;

  // Reads what is there; false at end of file.
  void readAvailable() {
    char buffer[65536];
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) return;
    if (got <= 0) {
      open = false;
      return;
    }
    text->append(buffer, static_cast<std::size_t>(got));
    if (text->size() > keep) text->erase(0, text->size() - keep);
  }
};

class Watch {
 public:
  Watch(pid_t pid, Stream answer, Stream errors, const FailureLimits& limits, std::chrono::milliseconds interval,
        Clock::time_point started)
      : pid_(pid),
        streams_{answer, errors},
        limits_(limits),
        interval_(interval),
        deadline_(started + limits.deadline),
        exitFd_(openPidfd(pid)) {}  // without pidfds the end is noticed at the next memory reading
  ~Watch() {
    if (exitFd_ >= 0) close(exitFd_);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  ChildEnd run() {
    while (!reaped()) {
      if (Clock::now() >= deadline_) {
        stop(ChildKill::deadline);
        break;
      }
      if (overCeiling()) {
        stop(ChildKill::memory);
        break;
      }
      pollStreams(std::min(interval_, std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now())));
      if (streams_[0].text->size() > kMaxMessageBytes) {
        stop(ChildKill::oversizedAnswer);
        break;
      }
    }
    drainStreams();
    end_.peakKilobytes = std::max<std::int64_t>(end_.peakKilobytes, usage_.ru_maxrss);
    return end_;
  }

 private:
  bool reaped() {
    const pid_t done = wait4(pid_, &end_.waitStatus, WNOHANG, &usage_);
    return done == pid_ || (done < 0 && errno == ECHILD);
  }

  bool overCeiling() {
    if (const auto peak = peakResidentKilobytes(pid_)) end_.peakKilobytes = std::max(end_.peakKilobytes, *peak);
    return end_.peakKilobytes * 1024 > limits_.memoryCeilingBytes;
  }

  void stop(ChildKill why) {
    end_.killedFor = why;
    kill(pid_, SIGKILL);
    while (wait4(pid_, &end_.waitStatus, 0, &usage_) < 0 && errno == EINTR) {
    }
  }

  // Wakes for output, for the child's end (through its pidfd, so a finished
  // child is reaped at once rather than at the next memory reading), or
  // when it is time to read the memory again.
  void pollStreams(std::chrono::milliseconds timeout) {
    pollfd fds[3];
    nfds_t count = 0;
    for (auto& stream : streams_) {
      if (stream.open) fds[count++] = {stream.fd, POLLIN, 0};
    }
    if (exitFd_ >= 0) fds[count++] = {exitFd_, POLLIN, 0};
    const int ready = poll(fds, count, static_cast<int>(std::max<std::int64_t>(timeout.count(), 0)));
    if (ready <= 0) return;
    for (nfds_t i = 0; i < count; ++i) {
      if (fds[i].revents == 0) continue;
      for (auto& stream : streams_) {
        if (stream.fd == fds[i].fd) stream.readAvailable();
      }
    }
  }

  // The child is gone: what it wrote is waiting in the buffers, unless a
  // process it started still holds them open.
  void drainStreams() {
    for (auto& stream : streams_) {
      while (stream.open) {
        pollfd waiting{stream.fd, POLLIN, 0};
        if (poll(&waiting, 1, 0) <= 0) break;
        stream.readAvailable();
      }
      close(stream.fd);
    }
  }

  pid_t pid_;
  Stream streams_[2];
  FailureLimits limits_;
  std::chrono::milliseconds interval_;
  Clock::time_point deadline_;
  int exitFd_;
  ChildEnd end_;
  rusage usage_{};
};

}  // namespace

ChildEnd watchChild(pid_t pid, int answerFd, int stderrFd, const FailureLimits& limits,
                    std::chrono::milliseconds sampleInterval, Clock::time_point started, std::string& answerText) {
  std::string errors;
  Watch watch(pid, {answerFd, &answerText, kMaxMessageBytes + 1}, {stderrFd, &errors, kStderrKeptBytes}, limits,
              sampleInterval, started);
  auto end = watch.run();
  end.stderrText = std::move(errors);
  return end;
}

}  // namespace quillan::worker
