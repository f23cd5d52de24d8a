#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace quillan::store {

class SqliteDatabase;

// One model entity as the store lays it out: its number and its table's columns.
struct EntityTable {
  std::string entityName;
  std::int64_t entityNumber = 0;
  std::string tableName;
  std::set<std::string> columns;

  bool hasColumn(std::string_view column) const { return columns.contains(std::string(column)); }
};

// The schema learnt from the store itself (Z_PRIMARYKEY and table info), never
// from fixed numbers or positions: the app owns the schema and migrations may
// renumber entities or append columns.
class StoreModel {
 public:
  static StoreModel read(SqliteDatabase& database);

  const EntityTable* entity(std::string_view entityName) const;

  // "Z" + the name uppercased: the table of an entity, the column of a property.
  static std::string storeName(std::string_view name);

 private:
  std::map<std::string, EntityTable, std::less<>> entities_;
};

}  // namespace quillan::store
