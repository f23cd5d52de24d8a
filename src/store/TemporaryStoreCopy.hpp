#pragma once

#include <filesystem>

namespace quillan::store {

// The temporary file a store copy is written to beside its destination,
// ".<name>.migrating-<pid>". Its writer creates it exclusively and holds an
// advisory lock (flock) on it for as long as it lives, so a later run can tell
// a copy in progress from one abandoned by a writer that was killed, and
// remove the abandoned ones.
class TemporaryStoreCopy {
 public:
  // Creates and locks the file for `destination`, replacing a leftover of an
  // earlier process that had this one's pid.
  explicit TemporaryStoreCopy(const std::filesystem::path& destination);
  // Removes the file (unless it was renamed away) with its -wal, -shm and
  // -journal, and drops the lock.
  ~TemporaryStoreCopy();
  TemporaryStoreCopy(const TemporaryStoreCopy&) = delete;
  TemporaryStoreCopy& operator=(const TemporaryStoreCopy&) = delete;

  const std::filesystem::path& path() const { return path_; }

  static std::filesystem::path pathFor(const std::filesystem::path& destination, long pid);
  // Removes the temporary copies beside `destination` whose writers are gone,
  // with their companion files. Copies of live writers are left alone.
  static void removeAbandoned(const std::filesystem::path& destination);
  static void removeWithCompanions(const std::filesystem::path& path);

 private:
  std::filesystem::path path_;
  int lock_ = -1;
};

}  // namespace quillan::store
