#pragma once

#include <filesystem>

namespace quillan::store {

// Copies a live SQLite store to `destination` so that a crash at any moment
// leaves either the old destination or the whole new one: SQLite's online
// backup (a consistent snapshot, WAL included) into a temporary file beside
// the destination, an integrity check, fsync, removal of the destination's
// stale -wal/-shm (a leftover WAL would be replayed onto the new file), rename
// into place, fsync of the directory. Throws SqliteException or
// std::filesystem::filesystem_error; the temporary file is gone afterwards.
void copyStoreFile(const std::filesystem::path& source, const std::filesystem::path& destination);

// The temporary file a copy to `destination` writes first.
std::filesystem::path temporaryCopyPath(const std::filesystem::path& destination);

}  // namespace quillan::store
