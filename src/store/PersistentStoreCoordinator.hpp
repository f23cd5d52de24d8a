#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Error.hpp"
#include "platform/URL.hpp"
#include "store/PersistentStore.hpp"
#include "store/Result.hpp"

namespace quillan::store {

// Holds the loaded stores. Loading a store checks, read-only, that the file is
// a journal this model can read; nothing is kept open between fetches.
class PersistentStoreCoordinator {
 public:
  using Options = std::map<std::string, std::string>;

  Result<std::shared_ptr<PersistentStore>> addPersistentStore(const platform::URL& url, const std::string& type);
  const std::vector<std::shared_ptr<PersistentStore>>& persistentStores() const { return stores_; }
  // persistentStore(for:): the loaded store whose URL is `url`, if any.
  std::shared_ptr<PersistentStore> persistentStore(const platform::URL& url) const;

  // Copies `store` to `url` (crash-safe: a temporary file beside the target,
  // checked, synced and renamed into place) and puts the new store in its place
  // in this coordinator, so later reads go to the new location. The old files
  // are left where they are.
  Result<std::shared_ptr<PersistentStore>> migratePersistentStore(const std::shared_ptr<PersistentStore>& store,
                                                                  const platform::URL& url, const Options& options,
                                                                  const std::string& type);

 private:
  std::vector<std::shared_ptr<PersistentStore>> stores_;
};

}  // namespace quillan::store
