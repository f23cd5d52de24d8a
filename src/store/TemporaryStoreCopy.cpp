#include "store/TemporaryStoreCopy.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

namespace quillan::store {
namespace {

const char* const kCompanionSuffixes[] = {"-wal", "-shm", "-journal"};
constexpr std::string_view kMarker = ".migrating-";

std::string prefixFor(const std::filesystem::path& destination) {
  // Appended rather than "." + name: GCC 12 at -O3 reports a false overlap in that form.
  std::string prefix = ".";
  prefix += destination.filename().string();
  prefix += kMarker;
  return prefix;
}

// The pid in ".<name>.migrating-<pid>[-wal|-shm|-journal]", and whether the
// name is a companion file.
struct CopyName {
  long pid;
  bool companion;
};

std::optional<CopyName> parseCopyName(const std::string& name, const std::string& prefix) {
  if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) return std::nullopt;
  std::size_t end = prefix.size();
  long pid = 0;
  while (end < name.size() && std::isdigit(static_cast<unsigned char>(name[end])) && pid < 1'000'000'000) {
    pid = pid * 10 + (name[end++] - '0');
  }
  if (end == prefix.size()) return std::nullopt;
  const std::string rest = name.substr(end);
  if (rest.empty()) return CopyName{pid, false};
  for (const char* suffix : kCompanionSuffixes) {
    if (rest == suffix) return CopyName{pid, true};
  }
  return std::nullopt;
}

bool processIsAlive(long pid) {
  if (pid <= 0) return false;
  return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

// A copy is abandoned when its writer's pid is gone and nobody holds its lock:
// the pid alone could have been reused, the lock alone could be taken in the
// instant between a writer creating the file and locking it.
bool isAbandoned(const std::filesystem::path& copy, long pid) {
  if (pid == ::getpid() || processIsAlive(pid)) return false;
  const int fd = ::open(copy.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
  if (fd < 0) return errno == ENOENT;
  const bool unlocked = ::flock(fd, LOCK_EX | LOCK_NB) == 0;
  ::close(fd);
  return unlocked;
}

}  // namespace

std::filesystem::path TemporaryStoreCopy::pathFor(const std::filesystem::path& destination, long pid) {
  return destination.parent_path() / (prefixFor(destination) + std::to_string(pid));
}

void TemporaryStoreCopy::removeWithCompanions(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  for (const char* suffix : kCompanionSuffixes) std::filesystem::remove(path.string() + suffix, ignored);
}

void TemporaryStoreCopy::removeAbandoned(const std::filesystem::path& destination) {
  const auto folder = destination.parent_path().empty() ? std::filesystem::path(".") : destination.parent_path();
  const auto prefix = prefixFor(destination);
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  if (error) return;
  for (const auto& entry : entries) {
    const auto name = entry.path().filename().string();
    const auto parsed = parseCopyName(name, prefix);
    if (!parsed) continue;
    const auto copy = pathFor(destination, parsed->pid);
    if (isAbandoned(copy, parsed->pid)) removeWithCompanions(copy);
  }
}

TemporaryStoreCopy::TemporaryStoreCopy(const std::filesystem::path& destination)
    : path_(pathFor(destination, ::getpid())) {
  // A file with this pid in its name can only be left over from an earlier
  // process: this one has not made it yet.
  removeWithCompanions(path_);
  lock_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644);
  if (lock_ < 0 || ::flock(lock_, LOCK_EX) != 0) {
    const std::error_code cause(errno, std::generic_category());
    if (lock_ >= 0) ::close(lock_);
    throw std::filesystem::filesystem_error("create", path_, cause);
  }
}

TemporaryStoreCopy::~TemporaryStoreCopy() {
  removeWithCompanions(path_);
  // Closed last: the lock must outlive every name of the copy.
  ::close(lock_);
}

}  // namespace quillan::store
