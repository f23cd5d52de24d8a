#include "store/PersistentStore.hpp"

#include "store/StoreSnapshot.hpp"

namespace quillan::store {

PersistentStore::PersistentStore(platform::URL url, std::string type) : url_(std::move(url)), type_(std::move(type)) {}

std::unique_ptr<StoreSnapshot> PersistentStore::snapshot() const {
  if (openConnection_) return StoreSnapshot::on(openConnection_);
  if (!std::filesystem::exists(filePath())) return nullptr;
  return StoreSnapshot::open(filePath());
}

void PersistentStore::keepOpen() {
  if (openConnection_) return;
  // One read opens the journal's -wal and -shm too, so commits still in the
  // WAL stay visible once the names are gone.
  auto first = StoreSnapshot::open(filePath());
  first->finish();
  openConnection_ = first->connection();
}

}  // namespace quillan::store
