#include "platform/FileCoordinator.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quillan::platform {
namespace {

// Holds an exclusive flock on a file for its lifetime; holds nothing if the
// file cannot be opened.
class ExclusiveFileLock {
 public:
  explicit ExclusiveFileLock(const std::filesystem::path& path) : fd_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (fd_ >= 0 && ::flock(fd_, LOCK_EX) != 0) release();
  }
  ~ExclusiveFileLock() { release(); }
  ExclusiveFileLock(const ExclusiveFileLock&) = delete;
  ExclusiveFileLock& operator=(const ExclusiveFileLock&) = delete;

 private:
  void release() {
    if (fd_ < 0) return;
    ::flock(fd_, LOCK_UN);
    ::close(fd_);
    fd_ = -1;
  }
  int fd_;
};

}  // namespace

void FileCoordinator::coordinateWriting(const URL& url, WritingOptions /*options*/,
                                        const std::function<void(const URL&)>& accessor) {
  // Deleting and writing take the same exclusive lock: a writer that honours
  // the lock never sees the file vanish in the middle of its own access.
  ExclusiveFileLock lock(url.filePath());
  accessor(url);
}

}  // namespace quillan::platform
