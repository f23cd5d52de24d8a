#include "snapshot/ReplacedFile.hpp"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quillan::snapshot {
namespace {

std::string systemReason() { return std::strerror(errno); }

// A hidden name beside `path`, taken exclusively: `.report.html.a1B2c3`.
std::filesystem::path createNewFileBeside(const std::filesystem::path& path, int& descriptor) {
  const auto folder = path.parent_path().empty() ? std::filesystem::path(".") : path.parent_path();
  auto pattern = (folder / ("." + path.filename().string() + ".XXXXXX")).string();
  descriptor = ::mkostemp(pattern.data(), O_CLOEXEC);
  if (descriptor < 0) throw ReplacedFileError(systemReason());
  // mkostemp makes the file private; a written result is as readable as any other.
  ::fchmod(descriptor, 0644);
  return pattern;
}

void writeAll(int descriptor, std::string_view contents) {
  while (!contents.empty()) {
    const auto count = ::write(descriptor, contents.data(), contents.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw ReplacedFileError(systemReason());
    contents.remove_prefix(static_cast<std::size_t>(count));
  }
}

void moveInto(const std::filesystem::path& newFile, const std::filesystem::path& path) {
  if (::rename(newFile.c_str(), path.c_str()) != 0) throw ReplacedFileError(systemReason());
}

}  // namespace

void replaceFile(const std::filesystem::path& path, std::string_view contents) {
  int descriptor = -1;
  const auto newFile = createNewFileBeside(path, descriptor);
  try {
    writeAll(descriptor, contents);
    if (::close(descriptor) != 0) {
      descriptor = -1;
      throw ReplacedFileError(systemReason());
    }
    descriptor = -1;
    moveInto(newFile, path);
  } catch (...) {
    if (descriptor >= 0) ::close(descriptor);
    ::unlink(newFile.c_str());
    throw;
  }
}

void replaceFileBy(const std::filesystem::path& path,
                   const std::function<void(const std::filesystem::path& newFile)>& write) {
  int descriptor = -1;
  const auto newFile = createNewFileBeside(path, descriptor);
  ::close(descriptor);
  try {
    write(newFile);
    moveInto(newFile, path);
  } catch (const std::exception& error) {
    ::unlink(newFile.c_str());
    if (dynamic_cast<const ReplacedFileError*>(&error)) throw;
    throw ReplacedFileError(error.what());
  }
}

}  // namespace quillan::snapshot
