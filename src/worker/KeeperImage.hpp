#pragma once

#include <sys/types.h>

#include "worker/WorkerOptions.hpp"

namespace quillan::worker {

// The argument that makes an executable holding the worker (the command)
// become a keeper: `quillan-widgets --worker-keeper`, its control socket on
// descriptor 3. Not meant to be typed.
inline constexpr const char* kKeeperArgument = "--worker-keeper";

struct KeeperProcess {
  pid_t pid = 0;
  int control = -1;  // the host's end of the control socket
};

// Starts options.keeperImage as a keeper: a fresh process image, as small as
// the first whatever this process has grown to, which receives the limits and
// options.keeperDefaults over its control socket. Throws std::runtime_error
// when it cannot be started.
KeeperProcess spawnKeeperImage(const WorkerOptions& options);

// The body of `<image> --worker-keeper`: reads the limits and the process
// defaults the host sent, applies the defaults and runs the keeper. Ends the
// process.
[[noreturn]] void runKeeperImage();

}  // namespace quillan::worker
