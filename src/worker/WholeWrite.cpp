#include "worker/WholeWrite.hpp"

#include <unistd.h>

#include <cerrno>

namespace quillan::worker {

void writeWhole(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace quillan::worker
