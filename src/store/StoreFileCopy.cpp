#include "store/StoreFileCopy.hpp"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "store/SqliteDatabase.hpp"

namespace quillan::store {
namespace {

const char* const kCompanionSuffixes[] = {"-wal", "-shm", "-journal"};

std::filesystem::path withSuffix(const std::filesystem::path& path, const char* suffix) {
  return path.parent_path() / (path.filename().string() + suffix);
}

void removeWithCompanions(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  for (const char* suffix : kCompanionSuffixes) std::filesystem::remove(withSuffix(path, suffix), ignored);
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
  SqliteDatabase from(source, SqliteDatabase::Mode::readOnly);
  SqliteDatabase to(target, SqliteDatabase::Mode::readWriteCreate);
  sqlite3_backup* copy = sqlite3_backup_init(to.handle(), "main", from.handle(), "main");
  if (!copy) throw SqliteException(sqlite3_errcode(to.handle()), sqlite3_errmsg(to.handle()));
  sqlite3_backup_step(copy, -1);
  const int code = sqlite3_backup_finish(copy);
  if (code != SQLITE_OK) throw SqliteException(code, sqlite3_errmsg(to.handle()));
  auto check = to.prepare("PRAGMA integrity_check");
  if (!check.step() || check.text(0) != "ok") {
    throw SqliteException(SQLITE_CORRUPT, "integrity check of the copy failed");
  }
}

}  // namespace

std::filesystem::path temporaryCopyPath(const std::filesystem::path& destination) {
  // Appended rather than "." + name: GCC 12 at -O3 reports a false overlap in that form.
  std::string name = ".";
  name += destination.filename().string();
  name += ".migrating-" + std::to_string(::getpid());
  return destination.parent_path() / name;
}

void copyStoreFile(const std::filesystem::path& source, const std::filesystem::path& destination) {
  const auto temporary = temporaryCopyPath(destination);
  removeWithCompanions(temporary);
  try {
    backup(source, temporary);
    fsyncPath(temporary, O_RDONLY);
    std::error_code ignored;
    std::filesystem::remove(withSuffix(destination, "-wal"), ignored);
    std::filesystem::remove(withSuffix(destination, "-shm"), ignored);
    std::filesystem::rename(temporary, destination);
    fsyncPath(destination.parent_path().empty() ? "." : destination.parent_path(), O_RDONLY | O_DIRECTORY);
  } catch (...) {
    removeWithCompanions(temporary);
    throw;
  }
  removeWithCompanions(temporary);
}

}  // namespace quillan::store
