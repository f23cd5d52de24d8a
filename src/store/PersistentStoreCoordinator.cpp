#include "store/PersistentStoreCoordinator.hpp"

#include <system_error>

#include "store/Note.hpp"
#include "store/SqliteDatabase.hpp"
#include "store/StoreErrors.hpp"
#include "store/StoreFileCopy.hpp"
#include "store/StoreSnapshot.hpp"
#include "store/TemporaryStoreCopy.hpp"

namespace quillan::store {
namespace {

constexpr long kFileWriteUnknownError = 512;
constexpr long kFileWriteFileExistsError = 516;

// The one entity the widgets read must be there with the columns they read;
// everything else the app's schema may add, drop or reorder.
std::optional<std::string> incompatibility(const StoreModel& model) {
  const auto& entity = Note::entityDescription();
  const auto* table = model.entity(entity.name);
  if (!table) return "the store has no entity " + entity.name;
  for (const auto& attribute : entity.attributes) {
    const auto column = StoreModel::storeName(attribute.name);
    if (attribute.requiredInStore && !table->hasColumn(column)) {
      return "the table " + table->tableName + " has no column " + column;
    }
  }
  return std::nullopt;
}

std::optional<platform::Error> checkJournal(const std::filesystem::path& path) {
  // The app creates its store on first save; until then there is nothing to check.
  if (!std::filesystem::exists(path)) return std::nullopt;
  try {
    auto snapshot = StoreSnapshot::open(path);
    if (!snapshot->database().hasTable("Z_PRIMARYKEY")) {
      return StoreErrors::incompatibleModel(path, "the store has no Z_PRIMARYKEY table");
    }
    if (auto reason = incompatibility(snapshot->model())) {
      return StoreErrors::incompatibleModel(path, *reason);
    }
    snapshot->finish();
    return std::nullopt;
  } catch (const SqliteException& failure) {
    return StoreErrors::fileError(path, failure);
  }
}

platform::Error copyError(const std::filesystem::path& destination, const std::exception& cause) {
  return platform::Error{"NSCocoaErrorDomain",
                         kFileWriteUnknownError,
                         "The file \"" + destination.filename().string() + "\" couldn't be saved.",
                         {{"NSFilePath", destination.string()}, {"reason", cause.what()}}};
}

platform::Error destinationExistsError(const std::filesystem::path& destination) {
  return platform::Error{"NSCocoaErrorDomain",
                         kFileWriteFileExistsError,
                         "The file \"" + destination.filename().string() +
                             "\" couldn't be saved because a file with the same name already exists.",
                         {{"NSFilePath", destination.string()}}};
}

}  // namespace

Result<std::shared_ptr<PersistentStore>> PersistentStoreCoordinator::addPersistentStore(const platform::URL& url,
                                                                                        const std::string& type) {
  if (auto error = checkJournal(url.filePath())) return *error;
  auto store = std::make_shared<PersistentStore>(url, type);
  stores_.push_back(store);
  return store;
}

std::shared_ptr<PersistentStore> PersistentStoreCoordinator::persistentStore(const platform::URL& url) const {
  for (const auto& store : stores_) {
    if (store->url().filePath() == url.filePath()) return store;
  }
  return nullptr;
}

Result<std::shared_ptr<PersistentStore>> PersistentStoreCoordinator::migratePersistentStore(
    const std::shared_ptr<PersistentStore>& store, const platform::URL& url, const Options& /*options*/,
    const std::string& type) {
  const auto destination = url.filePath();
  // Copies left by a run killed mid-move go whether or not this one copies.
  TemporaryStoreCopy::removeAbandoned(destination);
  // A journal already at the destination is the app's current one, newer than
  // any legacy copy: replacing it would lose what was written since.
  if (std::filesystem::exists(destination)) return destinationExistsError(destination);
  try {
    // The externally stored data goes first: a store in place must find it.
    copyExternalData(store->filePath(), destination);
    copyStoreFile(store->filePath(), destination);
  } catch (const DestinationExists&) {
    return destinationExistsError(destination);
  } catch (const SqliteException& failure) {
    return StoreErrors::fileError(store->filePath(), failure);
  } catch (const std::exception& failure) {
    return copyError(destination, failure);
  }
  auto migrated = std::make_shared<PersistentStore>(url, type);
  for (auto& loaded : stores_) {
    if (loaded == store) loaded = migrated;
  }
  return migrated;
}

}  // namespace quillan::store
