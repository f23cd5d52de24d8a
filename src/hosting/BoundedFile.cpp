#include "hosting/BoundedFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quillan::hosting {
namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

std::string systemReason() { return std::strerror(errno); }

BoundedFileError tooLarge(std::uintmax_t limitBytes) {
  return BoundedFileError("larger than the limit of " + byteCountName(limitBytes));
}

}  // namespace

std::string byteCountName(std::uintmax_t bytes) {
  constexpr std::uintmax_t kKiB = 1024, kMiB = 1024 * kKiB;
  if (bytes >= kMiB && bytes % kMiB == 0) return std::to_string(bytes / kMiB) + " MiB";
  if (bytes >= kKiB && bytes % kKiB == 0) return std::to_string(bytes / kKiB) + " KiB";
  return std::to_string(bytes) + " bytes";
}

std::string readBoundedFile(const std::filesystem::path& path, std::uintmax_t limitBytes) {
  // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (file.get() < 0) throw BoundedFileError(systemReason());
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) throw BoundedFileError(systemReason());
  if (!S_ISREG(status.st_mode)) {
    throw BoundedFileError(S_ISDIR(status.st_mode) ? "a folder, not a file" : "not a regular file");
  }
  if (static_cast<std::uintmax_t>(status.st_size) > limitBytes) throw tooLarge(limitBytes);

  std::string contents;
  char buffer[64 * 1024];
  for (;;) {
    const auto count = ::read(file.get(), buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw BoundedFileError(systemReason());
    if (count == 0) return contents;
    contents.append(buffer, static_cast<std::size_t>(count));
    if (contents.size() > limitBytes) throw tooLarge(limitBytes);
  }
}

}  // namespace quillan::hosting
