#include "store/SqliteBatchDeleteExecutor.hpp"

#include "store/FetchQuery.hpp"
#include "store/SqliteDatabase.hpp"
#include "store/StoreErrors.hpp"
#include "store/StoreModel.hpp"

namespace quillan::store {
namespace {

// The to-one relationships of the model, by the entity they point at.
struct InverseKey {
  const char* targetEntity;
  const char* sourceEntity;
  const char* attribute;
};

constexpr InverseKey kInverseKeys[] = {
    {"Note", "NoteImage", "owner"},
    {"Note", "NoteRecording", "owner"},
    {"TimelineTab", "Note", "timelineTab"},
};

std::vector<std::int64_t> matchingKeys(SqliteDatabase& database, const BatchDeleteRequest& request,
                                       const EntityTable& table) {
  FetchSpecification matching{request.entityName, request.predicate, {}, std::nullopt};
  if (request.objectIDs) {
    std::vector<std::int64_t> keys;
    for (const auto& id : *request.objectIDs) {
      if (id.entityName != request.entityName) {
        throw InvalidFetchRequest("object id of entity " + id.entityName + " in a batch delete of " +
                                  request.entityName);
      }
      keys.push_back(id.primaryKey);
    }
    matching.predicate = Predicate::primaryKeyIn(std::move(keys));
  }
  std::vector<Predicate::Value> bindings;
  const auto where = FetchQuery::whereClause(matching, table, bindings);
  auto statement = database.prepare("SELECT Z_PK FROM " + table.tableName + " WHERE " + where + " ORDER BY Z_PK");
  bindValues(statement, bindings);
  std::vector<std::int64_t> keys;
  while (statement.step()) keys.push_back(statement.integer(0));
  return keys;
}

void nullifyInverseKeys(SqliteDatabase& database, const StoreModel& model, const std::string& entityName,
                        std::int64_t primaryKey) {
  for (const auto& inverse : kInverseKeys) {
    if (entityName != inverse.targetEntity) continue;
    const auto* source = model.entity(inverse.sourceEntity);
    const auto column = StoreModel::storeName(inverse.attribute);
    if (!source || !source->hasColumn(column)) continue;
    auto statement = database.prepare("UPDATE " + source->tableName + " SET " + column +
                                      " = NULL, Z_OPT = Z_OPT + 1 WHERE " + column + " = ?");
    statement.bind(1, primaryKey);
    statement.step();
  }
}

void deleteRows(SqliteDatabase& database, const StoreModel& model, const EntityTable& table,
                const std::vector<std::int64_t>& keys) {
  auto statement = database.prepare("DELETE FROM " + table.tableName + " WHERE Z_PK = ?");
  for (auto key : keys) {
    statement.reset();
    statement.bind(1, key);
    statement.step();
    nullifyInverseKeys(database, model, table.entityName, key);
  }
}

BatchDeleteResult resultOfType(BatchDeleteRequestResultType type, const std::string& entityName,
                               const std::vector<std::int64_t>& keys) {
  switch (type) {
    case BatchDeleteRequestResultType::resultTypeObjectIDs: {
      std::vector<ObjectID> ids;
      for (auto key : keys) ids.push_back(ObjectID{entityName, key});
      return BatchDeleteResult{std::move(ids)};
    }
    case BatchDeleteRequestResultType::resultTypeCount:
      return BatchDeleteResult{static_cast<std::int64_t>(keys.size())};
    case BatchDeleteRequestResultType::resultTypeStatusOnly: return BatchDeleteResult{true};
  }
  return BatchDeleteResult{};
}

}  // namespace

Result<PersistentStoreResult> SqliteBatchDeleteExecutor::execute(const BatchDeleteRequest& request,
                                                                 const PersistentStore& store) {
  const auto path = store.filePath();
  try {
    SqliteDatabase database(path, SqliteDatabase::Mode::readWrite);
    SqliteTransaction transaction(database, "BEGIN IMMEDIATE");
    const auto model = StoreModel::read(database);
    const auto* table = model.entity(request.entityName);
    if (!table) throw InvalidFetchRequest("entity " + request.entityName + " is not in the store");
    const auto keys = matchingKeys(database, request, *table);
    deleteRows(database, model, *table, keys);
    transaction.commit();
    return PersistentStoreResult{resultOfType(request.resultType, request.entityName, keys)};
  } catch (const SqliteException& failure) {
    return StoreErrors::fileError(path, failure);
  } catch (const InvalidFetchRequest& failure) {
    return StoreErrors::invalidRequest(failure.what());
  }
}

}  // namespace quillan::store
