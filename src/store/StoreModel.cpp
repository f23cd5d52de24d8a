#include "store/StoreModel.hpp"

#include <cctype>

#include "store/SqliteDatabase.hpp"

namespace quillan::store {
namespace {

// Core Data numbers its own bookkeeping entities (history, mirroring) from here up.
constexpr std::int64_t kFirstSystemEntityNumber = 16000;

}  // namespace

StoreModel StoreModel::read(SqliteDatabase& database) {
  StoreModel model;
  auto statement = database.prepare("SELECT Z_ENT, Z_NAME FROM Z_PRIMARYKEY WHERE Z_ENT < ?1 AND Z_NAME IS NOT NULL");
  statement.bind(1, kFirstSystemEntityNumber);
  while (statement.step()) {
    EntityTable entity;
    entity.entityNumber = statement.integer(0);
    entity.entityName = statement.text(1);
    entity.tableName = storeName(entity.entityName);
    model.entities_.emplace(entity.entityName, std::move(entity));
  }
  for (auto& [name, entity] : model.entities_) {
    for (auto& column : database.columnNames(entity.tableName)) entity.columns.insert(column);
  }
  return model;
}

const EntityTable* StoreModel::entity(std::string_view entityName) const {
  const auto found = entities_.find(entityName);
  if (found == entities_.end() || found->second.columns.empty()) return nullptr;
  return &found->second;
}

std::string StoreModel::storeName(std::string_view name) {
  std::string result = "Z";
  for (char c : name) result.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
  return result;
}

}  // namespace quillan::store
