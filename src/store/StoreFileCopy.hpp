#pragma once

#include <filesystem>
#include <stdexcept>

namespace quillan::store {

// The destination of a copy already exists: the copy never replaces a store.
class DestinationExists : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Copies a live SQLite store to `destination` so that a crash at any moment
// leaves either the old destination or the whole new one: SQLite's online
// backup (a consistent snapshot, WAL included) into a temporary file beside
// the destination, an integrity check, fsync, removal of the destination's
// stale -wal/-shm (a leftover WAL would be replayed onto the new file), a
// rename into place that never replaces a file (a store that appeared at the
// destination meanwhile wins: DestinationExists), fsync of the directory.
// Throws DestinationExists, SqliteException or std::filesystem::filesystem_error;
// the temporary file is gone afterwards.
void copyStoreFile(const std::filesystem::path& source, const std::filesystem::path& destination);

// Copies the files a store keeps outside its database (externally stored
// images and recordings) into the destination store's folder for them, never
// replacing a file there. Nothing to do when the source store has none.
void copyExternalData(const std::filesystem::path& source, const std::filesystem::path& destination);

// The temporary file a copy to `destination` writes first.
std::filesystem::path temporaryCopyPath(const std::filesystem::path& destination);

}  // namespace quillan::store
