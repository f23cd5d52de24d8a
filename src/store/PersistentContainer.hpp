#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Error.hpp"
#include "platform/URL.hpp"
#include "store/ManagedObjectContext.hpp"
#include "store/PersistentStoreCoordinator.hpp"
#include "store/PersistentStoreDescription.hpp"

namespace quillan::store {

// A container of the journal's stack: the model's name, its store
// descriptions, the coordinator and the view context. It starts with one
// default description: "<name>.sqlite" in the default store directory (the
// extension's application-support folder).
class PersistentContainer {
 public:
  using LoadCompletion = std::function<void(const PersistentStoreDescription&, const std::optional<platform::Error>&)>;

  explicit PersistentContainer(std::string name);
  PersistentContainer(const PersistentContainer&) = delete;
  PersistentContainer& operator=(const PersistentContainer&) = delete;

  const std::string& name() const { return name_; }
  static platform::URL defaultDirectoryURL();

  std::vector<PersistentStoreDescription> persistentStoreDescriptions;

  // Loads every described store synchronously, calling `completion` once per store.
  void loadPersistentStores(const LoadCompletion& completion);
  // How many stores this container has loaded so far.
  std::size_t loadedStoreCount() const { return loadedStoreCount_; }

  PersistentStoreCoordinator& persistentStoreCoordinator() { return *coordinator_; }
  const std::shared_ptr<ManagedObjectContext>& viewContext() const { return viewContext_; }

 private:
  std::string name_;
  std::shared_ptr<PersistentStoreCoordinator> coordinator_;
  std::shared_ptr<ManagedObjectContext> viewContext_;
  std::size_t loadedStoreCount_ = 0;
};

}  // namespace quillan::store
