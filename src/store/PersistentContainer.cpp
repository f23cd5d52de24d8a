#include "store/PersistentContainer.hpp"

#include "platform/FileManager.hpp"
#include "store/StoreErrors.hpp"

namespace quillan::store {

PersistentContainer::PersistentContainer(std::string name)
    : name_(std::move(name)),
      coordinator_(std::make_shared<PersistentStoreCoordinator>()),
      viewContext_(std::make_shared<ManagedObjectContext>(coordinator_)) {
  PersistentStoreDescription description;
  description.url = defaultDirectoryURL().appendingPathComponent(name_ + ".sqlite");
  persistentStoreDescriptions.push_back(std::move(description));
}

platform::URL PersistentContainer::defaultDirectoryURL() {
  return platform::FileManager::applicationSupportDirectory();
}

void PersistentContainer::loadPersistentStores(const LoadCompletion& completion) {
  for (const auto& description : persistentStoreDescriptions) {
    if (!description.url) {
      completion(description, StoreErrors::invalidRequest("The store description has no URL."));
      continue;
    }
    auto loaded = coordinator_->addPersistentStore(*description.url, description.type);
    ++loadedStoreCount_;
    completion(description, loaded ? std::nullopt : std::optional<platform::Error>(loaded.error()));
  }
}

}  // namespace quillan::store
