#include "store/KeptFile.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quillan::store {

bool KeptFile::follow(const std::filesystem::path& path, struct stat& status) {
  if (stat(path.c_str(), &status) != 0) {
    const int reason = errno;
    release();
    errno = reason;
    return false;
  }
  if (fd_ >= 0 && status.st_dev == device_ && status.st_ino == inode_) return fstat(fd_, &status) == 0;
  release();
  fd_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd_ < 0 || fstat(fd_, &status) != 0) return false;
  device_ = status.st_dev;
  inode_ = status.st_ino;
  return true;
}

void KeptFile::release() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

}  // namespace quillan::store
