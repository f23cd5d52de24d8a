#include "store/StoreErrors.hpp"

#include <sqlite3.h>

#include "store/SqliteDatabase.hpp"

namespace quillan::store {
namespace {

constexpr const char* kCocoaErrorDomain = "NSCocoaErrorDomain";
constexpr long kFileReadUnknownError = 256;
constexpr long kFileReadNoPermissionError = 257;
constexpr long kFileReadCorruptFileError = 259;
constexpr long kPersistentStoreIncompatibleSchemaError = 134020;
constexpr long kValidationError = 134060;

long fileErrorCode(int sqliteCode) {
  switch (sqliteCode) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT: return kFileReadCorruptFileError;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN: return kFileReadNoPermissionError;
    default: return kFileReadUnknownError;
  }
}

std::string fileDescription(long code, const std::string& name) {
  const std::string quoted = "\"" + name + "\"";
  switch (code) {
    case kFileReadCorruptFileError:
      return "The file " + quoted + " couldn't be opened because it isn't in the correct format.";
    case kFileReadNoPermissionError:
      return "The file " + quoted + " couldn't be opened because you don't have permission to view it.";
    default: return "The file " + quoted + " couldn't be opened.";
  }
}

}  // namespace

platform::Error StoreErrors::fileError(const std::filesystem::path& path, const SqliteException& cause) {
  const long code = fileErrorCode(cause.code());
  return platform::Error{
      kCocoaErrorDomain,
      code,
      fileDescription(code, path.filename().string()),
      {{"NSFilePath", path.string()}, {"NSSQLiteErrorDomain", std::to_string(cause.code())}, {"reason", cause.what()}}};
}

platform::Error StoreErrors::incompatibleModel(const std::filesystem::path& path, const std::string& reason) {
  return platform::Error{kCocoaErrorDomain,
                         kPersistentStoreIncompatibleSchemaError,
                         "The model used to open the store is incompatible with the one used to create the store.",
                         {{"NSFilePath", path.string()}, {"reason", reason}}};
}

platform::Error StoreErrors::invalidRequest(const std::string& reason) {
  return platform::Error{
      kCocoaErrorDomain, kValidationError, "The operation couldn't be completed.", {{"reason", reason}}};
}

}  // namespace quillan::store
