#include "worker/Pidfd.hpp"

#include <sys/syscall.h>
#include <unistd.h>

namespace quillan::worker {

// Through the system call: the C library's header of this release declares
// the wrapper without C linkage.
int openPidfd(pid_t pid) { return static_cast<int>(syscall(SYS_pidfd_open, pid, 0)); }

}  // namespace quillan::worker
