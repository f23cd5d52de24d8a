#pragma once

#include <sys/stat.h>

#include <filesystem>

namespace quillan::store {

// A file kept open for reading between reads, and opened again only when the
// path names another file (replaced by a rename, removed and made again).
// Closing a file releases every POSIX lock the process holds on it, whichever
// descriptor took them: a reader that opened and closed an SQLite journal at
// each read would take the locks of any connection of the same process to it.
class KeptFile {
 public:
  KeptFile() = default;
  ~KeptFile() { release(); }
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;

  // The file `path` names now, open, with its status in `status`; false when
  // there is none or it cannot be opened (errno says why).
  bool follow(const std::filesystem::path& path, struct stat& status);
  int fd() const { return fd_; }

 private:
  void release();

  int fd_ = -1;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};

}  // namespace quillan::store
