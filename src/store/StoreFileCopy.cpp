#include "store/StoreFileCopy.hpp"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "store/ExternalStorage.hpp"
#include "store/SqliteDatabase.hpp"
#include "store/StoreSnapshot.hpp"
#include "store/TemporaryStoreCopy.hpp"

namespace quillan::store {
namespace {

std::filesystem::path withSuffix(const std::filesystem::path& path, const char* suffix) {
  return path.parent_path() / (path.filename().string() + suffix);
}

void fsyncPath(const std::filesystem::path& path, int flags) {
  const int fd = ::open(path.c_str(), flags | O_CLOEXEC);
  if (fd < 0 || ::fsync(fd) != 0) {
    const std::error_code cause(errno, std::generic_category());
    if (fd >= 0) ::close(fd);
    throw std::filesystem::filesystem_error("fsync", path, cause);
  }
  ::close(fd);
}

void backup(const std::filesystem::path& source, const std::filesystem::path& target) {
  // Read as every read of a journal is: one snapshot, even where the legacy
  // folder cannot be written.
  auto from = StoreSnapshot::open(source);
  SqliteDatabase to(target, SqliteDatabase::Mode::readWriteCreate);
  sqlite3_backup* copy = sqlite3_backup_init(to.handle(), "main", from->database().handle(), "main");
  if (!copy) throw SqliteException(sqlite3_errcode(to.handle()), sqlite3_errmsg(to.handle()));
  sqlite3_backup_step(copy, -1);
  const int code = sqlite3_backup_finish(copy);
  if (code != SQLITE_OK) throw SqliteException(code, sqlite3_errmsg(to.handle()));
  auto check = to.prepare("PRAGMA integrity_check");
  if (!check.step() || check.text(0) != "ok") {
    throw SqliteException(SQLITE_CORRUPT, "integrity check of the copy failed");
  }
}

// rename() that fails with EEXIST instead of replacing an existing file.
void renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
  if (errno == EINVAL || errno == ENOSYS) {
    // File systems without the flag: a hard link also refuses an existing name.
    if (::link(from.c_str(), to.c_str()) == 0) {
      ::unlink(from.c_str());
      return;
    }
  }
  if (errno == EEXIST) throw DestinationExists(to.string() + " already exists");
  throw std::filesystem::filesystem_error("rename", from, to, std::error_code(errno, std::generic_category()));
}

}  // namespace

std::filesystem::path temporaryCopyPath(const std::filesystem::path& destination) {
  return TemporaryStoreCopy::pathFor(destination, ::getpid());
}

void copyStoreFile(const std::filesystem::path& source, const std::filesystem::path& destination) {
  TemporaryStoreCopy::removeAbandoned(destination);
  const TemporaryStoreCopy temporary(destination);
  backup(source, temporary.path());
  fsyncPath(temporary.path(), O_RDONLY);
  if (std::filesystem::exists(destination)) throw DestinationExists(destination.string() + " already exists");
  std::error_code ignored;
  std::filesystem::remove(withSuffix(destination, "-wal"), ignored);
  std::filesystem::remove(withSuffix(destination, "-shm"), ignored);
  renameWithoutReplacing(temporary.path(), destination);
  fsyncPath(destination.parent_path().empty() ? "." : destination.parent_path(), O_RDONLY | O_DIRECTORY);
}

void copyExternalData(const std::filesystem::path& source, const std::filesystem::path& destination) {
  const auto from = externalDataDirectory(source);
  if (!std::filesystem::is_directory(from)) return;
  const auto to = externalDataDirectory(destination);
  std::filesystem::create_directories(to);
  for (const auto& entry : std::filesystem::directory_iterator(from)) {
    if (!entry.is_regular_file()) continue;
    std::filesystem::copy_file(entry.path(), to / entry.path().filename(),
                               std::filesystem::copy_options::skip_existing);
  }
}

}  // namespace quillan::store
