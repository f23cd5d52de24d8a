#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "platform/URL.hpp"
#include "store/PersistentContainer.hpp"

namespace quillan::store {

inline constexpr const char* kContainerName = "Quillan";
inline constexpr const char* kAppGroupIdentifier = "group.com.tarvelo.Quillan";
inline constexpr const char* kStoreFileName = "Quillan.sqlite";
inline constexpr const char* kCloudKitContainerIdentifier = "iCloud.com.tarvelo.Quillan";
inline constexpr const char* kCoreDataStackSource = "OnThisDayWidgetExtension/CoreDataStack";

// Owns the one journal container of the process. The first read of
// persistentContainer() builds and loads it (moving a legacy store from the
// default location into the group container, once); every later read returns
// the same container. The build is guarded, so threads that ask first at the
// same moment get one container.
//
// After a legacy move the container reads the migrated store in the group
// container: the coordinator swaps the loaded legacy store for the new one,
// as the platform's migration does.
class CoreDataStack {
 public:
  static CoreDataStack& shared();
  // A fresh stack for tests (as if in a new process); production code uses shared().
  static std::unique_ptr<CoreDataStack> makeForTesting();

  PersistentContainer& persistentContainer();

 private:
  CoreDataStack() = default;
  static std::unique_ptr<PersistentContainer> buildContainer();

  std::once_flag built_;
  std::unique_ptr<PersistentContainer> persistentContainer_;
};

}  // namespace quillan::store
