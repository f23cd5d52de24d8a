#pragma once

#include <filesystem>
#include <string>

#include "platform/Error.hpp"

namespace quillan::store {

class SqliteException;

// The errors the store reports, shaped like the platform's Cocoa errors so
// that their descriptions read as they would on the phone.
struct StoreErrors {
  // A store file that SQLite cannot open or read (not a database, corrupt,
  // unreadable).
  static platform::Error fileError(const std::filesystem::path& path, const SqliteException& cause);
  // A readable database that is not a journal of this model.
  static platform::Error incompatibleModel(const std::filesystem::path& path, const std::string& reason);
  // A request the store cannot answer (unknown entity or attribute, no store).
  static platform::Error invalidRequest(const std::string& reason);
};

}  // namespace quillan::store
