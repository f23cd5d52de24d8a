#include "store/StoreSnapshot.hpp"

namespace quillan::store {

StoreSnapshot::StoreSnapshot(const std::filesystem::path& storePath)
    : database_(storePath, SqliteDatabase::Mode::readOnly),
      transaction_(database_),
      model_(StoreModel::read(database_)) {}

}  // namespace quillan::store
