#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "store/EntityDescription.hpp"
#include "store/FetchRequest.hpp"
#include "store/StoreModel.hpp"

namespace quillan::store {

class SqliteStatement;

// A request the store cannot express: an attribute the entity lacks.
class InvalidFetchRequest : public std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

// The SELECT for one fetch: Z_PK, then one column per attribute of the entity
// (NULL for binary attributes, which fetches never read, and for columns this
// store does not have), filtered, ordered (Z_PK last, so ties keep the store's
// order) and limited. Every value is bound, every column checked.
class FetchQuery {
 public:
  FetchQuery(const FetchSpecification& request, const EntityDescription& entity, const EntityTable& table);
  // The Z_PK of the rows, in the same order, for which the SQL function
  // `test` says yes of the column of one attribute: a scan that judges rows
  // by that value reads nothing else and returns only what it keeps.
  FetchQuery(const FetchSpecification& request, const EntityDescription& entity, const EntityTable& table,
             std::size_t judgedAttribute, const std::string& test);

  // Z_PK and every attribute's column of the one row whose Z_PK is bound as ?1.
  static std::string rowSql(const EntityDescription& entity, const EntityTable& table);

  const std::string& sql() const { return sql_; }
  void bind(SqliteStatement& statement) const;

  // The WHERE clause alone ("1" when the request has no predicate), with its bindings.
  static std::string whereClause(const FetchSpecification& request, const EntityTable& table,
                                 std::vector<Predicate::Value>& bindings);

 private:
  FetchQuery(const FetchSpecification& request, const EntityTable& table, const std::string& columns,
             const std::string& extraCondition);

  std::string sql_;
  std::vector<Predicate::Value> bindings_;
};

void bindValues(SqliteStatement& statement, const std::vector<Predicate::Value>& values);

}  // namespace quillan::store
