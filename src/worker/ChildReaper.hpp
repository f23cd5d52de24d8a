#pragma once

#include <sys/types.h>

#include <mutex>
#include <thread>
#include <vector>

namespace quillan::worker {

// Reaps adopted children the moment they end, on its own thread (through
// their pidfds), so a keeper killed while the host is idle leaves no zombie
// until the host next needs it. The destructor waits for every adopted child
// still running to end, then reaps it.
class ChildReaper {
 public:
  ChildReaper();
  ~ChildReaper();
  ChildReaper(const ChildReaper&) = delete;
  ChildReaper& operator=(const ChildReaper&) = delete;

  // `pid` must be a child of this process that nothing else waits for. A
  // child whose pidfd cannot be opened is reaped in the destructor.
  void adopt(pid_t pid);
  // How many adopted children have not been reaped yet.
  std::size_t unreaped() const;

 private:
  struct Child {
    pid_t pid;
    int exitFd;
  };

  static constexpr std::size_t kWatchedAtOnce = 63;

  void run();
  void reapEnded();

  mutable std::mutex mutex_;
  std::vector<Child> children_;
  bool stopping_ = false;
  int wake_ = -1;  // an eventfd: a child was adopted, or the reaper stops
  std::thread thread_;
};

}  // namespace quillan::worker
