#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/URL.hpp"
#include "store/PersistentStore.hpp"

namespace quillan::store {

// Names the CloudKit container a store mirrors to. Off the phone nothing is
// mirrored; the identifier is kept so that the store's configuration reads as
// the app's does.
struct CloudKitContainerOptions {
  std::string containerIdentifier;
};

// How to load one store: where, of what type, with which options.
struct PersistentStoreDescription {
  std::optional<platform::URL> url;
  std::string type = kSQLiteStoreType;
  std::optional<CloudKitContainerOptions> cloudKitContainerOptions;
  bool isReadOnly = false;
  bool shouldAddStoreAsynchronously = false;
  std::map<std::string, std::string> options;
};

}  // namespace quillan::store
