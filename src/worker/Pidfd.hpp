#pragma once

#include <sys/types.h>

namespace quillan::worker {

// A file descriptor that becomes readable when the process `pid` ends, or -1
// on kernels without pidfds (callers then notice the end some other way).
int openPidfd(pid_t pid);

}  // namespace quillan::worker
