#include "store/CoreDataStack.hpp"

#include <filesystem>

#include "platform/ExtensionLog.hpp"
#include "platform/Fatal.hpp"
#include "platform/FileCoordinator.hpp"
#include "platform/FileManager.hpp"
#include "store/SqliteDatabase.hpp"

namespace quillan::store {
namespace {

std::optional<platform::URL> legacyStoreURL(const PersistentContainer& container) {
  if (container.persistentStoreDescriptions.empty()) return std::nullopt;
  const auto& url = container.persistentStoreDescriptions.front().url;
  if (!url || !platform::FileManager::fileExists(url->filePath())) return std::nullopt;
  return url;
}

void useSharedStore(PersistentContainer& container, const platform::URL& storeURL) {
  PersistentStoreDescription description;
  description.url = storeURL;
  description.cloudKitContainerOptions = CloudKitContainerOptions{kCloudKitContainerIdentifier};
  container.persistentStoreDescriptions = {description};
}

void deleteLegacyStore(const platform::URL& legacyURL) {
  platform::FileCoordinator coordinator;
  coordinator.coordinateWriting(legacyURL, platform::FileCoordinator::WritingOptions::forDeleting,
                                [](const platform::URL& url) {
                                  if (auto error = platform::FileManager::removeItem(url)) {
                                    platform::ExtensionLog::print(error->localizedDescription);
                                  }
                                });
}

// After a failed move this run still reads the legacy store it loaded, as the
// phone's store stays open: the connection outlives the file's deletion.
void keepReadable(PersistentStore& legacyStore) {
  try {
    legacyStore.keepOpen();
  } catch (const SqliteException&) {
    // It loaded a moment ago; if it cannot be read now, reads fail as they
    // would have anyway (an empty result).
  }
}

// Off the phone two different paths can name one file (a symlinked or
// bind-mounted folder); moving a store onto itself would delete it.
bool sameFile(const platform::URL& a, const platform::URL& b) {
  std::error_code ignored;
  return std::filesystem::equivalent(a.filePath(), b.filePath(), ignored);
}

// The move is tried once: the legacy file goes whether or not migrating worked.
void moveLegacyStore(PersistentContainer& container, const platform::URL& legacyURL, const platform::URL& storeURL) {
  if (legacyURL.absoluteString() == storeURL.absoluteString() || sameFile(legacyURL, storeURL)) return;
  auto& coordinator = container.persistentStoreCoordinator();
  auto legacyStore = coordinator.persistentStore(legacyURL);
  if (!legacyStore) return;
  auto migrated = coordinator.migratePersistentStore(legacyStore, storeURL, {}, kSQLiteStoreType);
  if (!migrated) {
    platform::ExtensionLog::print(migrated.error().localizedDescription);
    keepReadable(*legacyStore);
  }
  deleteLegacyStore(legacyURL);
}

}  // namespace

CoreDataStack& CoreDataStack::shared() {
  static CoreDataStack* const instance = new CoreDataStack();
  return *instance;
}

std::unique_ptr<CoreDataStack> CoreDataStack::makeForTesting() {
  return std::unique_ptr<CoreDataStack>(new CoreDataStack());
}

PersistentContainer& CoreDataStack::persistentContainer() {
  std::call_once(built_, [this] { persistentContainer_ = buildContainer(); });
  return *persistentContainer_;
}

std::unique_ptr<PersistentContainer> CoreDataStack::buildContainer() {
  auto container = std::make_unique<PersistentContainer>(kContainerName);
  auto groupURL = platform::FileManager::containerURL(kAppGroupIdentifier);
  if (!groupURL) platform::silentStop();
  const auto storeURL = groupURL->appendingPathComponent(kStoreFileName);
  const auto legacyURL = legacyStoreURL(*container);
  if (!legacyURL) useSharedStore(*container, storeURL);

  auto& unowned = *container;
  container->loadPersistentStores([&unowned, legacyURL, storeURL](const PersistentStoreDescription&,
                                                                  const std::optional<platform::Error>& error) {
    if (error) {
      platform::fatalError(kCoreDataStackSource,
                           "Unresolved error " + error->description() + ", " + error->userInfoDescription());
    }
    if (legacyURL) moveLegacyStore(unowned, *legacyURL, storeURL);
  });

  container->viewContext()->automaticallyMergesChangesFromParent = true;
  container->viewContext()->mergePolicy = MergePolicy::mergeByPropertyObjectTrump;
  return container;
}

}  // namespace quillan::store
