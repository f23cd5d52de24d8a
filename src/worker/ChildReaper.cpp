#include "worker/ChildReaper.hpp"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "worker/Pidfd.hpp"

namespace quillan::worker {
namespace {

void notify(int eventFd) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(eventFd, &one, sizeof one);
}

void drain(int eventFd) {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto got = read(eventFd, &count, sizeof count);
}

void waitFor(pid_t pid) {
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

ChildReaper::ChildReaper() : wake_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (wake_ < 0) throw std::runtime_error(std::string("worker: no eventfd for the reaper: ") + std::strerror(errno));
}

ChildReaper::~ChildReaper() {
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  notify(wake_);
  if (thread_.joinable()) thread_.join();
  for (const auto& child : children_) {
    waitFor(child.pid);
    if (child.exitFd >= 0) close(child.exitFd);
  }
  close(wake_);
}

// The thread starts with the first child, after its fork: a thread starting
// while the host forks may hold an allocator's lock at that moment (one that
// does not guard fork, as the sanitizers' does not), which then stays held
// for good in the child.
void ChildReaper::adopt(pid_t pid) {
  {
    std::lock_guard lock(mutex_);
    children_.push_back({pid, openPidfd(pid)});
    if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  }
  notify(wake_);
}

std::size_t ChildReaper::unreaped() const {
  std::lock_guard lock(mutex_);
  return children_.size();
}

// The loop allocates nothing, for the same reason: its host forks keepers
// while it runs. Children past the array's room are still reaped at each wake.
void ChildReaper::run() {
  std::array<pollfd, kWatchedAtOnce + 1> fds{};
  while (true) {
    fds[0] = {wake_, POLLIN, 0};
    std::size_t count = 1;
    {
      std::lock_guard lock(mutex_);
      if (stopping_) return;
      for (const auto& child : children_) {
        if (child.exitFd >= 0 && count < fds.size()) fds[count++] = {child.exitFd, POLLIN, 0};
      }
    }
    if (poll(fds.data(), count, -1) < 0 && errno != EINTR) return;
    if (fds[0].revents != 0) drain(wake_);
    reapEnded();
  }
}

void ChildReaper::reapEnded() {
  std::lock_guard lock(mutex_);
  std::erase_if(children_, [](const Child& child) {
    const pid_t reaped = waitpid(child.pid, nullptr, WNOHANG);
    if (reaped == 0 || (reaped < 0 && errno != ECHILD)) return false;
    if (child.exitFd >= 0) close(child.exitFd);
    return true;
  });
}

}  // namespace quillan::worker
