#include "store/FetchQuery.hpp"

#include "store/SqliteDatabase.hpp"

namespace quillan::store {
namespace {

std::string column(const EntityTable& table, const std::string& attribute) {
  auto name = StoreModel::storeName(attribute);
  if (!table.hasColumn(name)) {
    throw InvalidFetchRequest("keypath " + attribute + " not found in entity " + table.entityName);
  }
  return name;
}

const char* sqlOperator(Predicate::Comparison comparison) {
  switch (comparison) {
    case Predicate::Comparison::equal: return " = ";
    case Predicate::Comparison::notEqual: return " <> ";
    case Predicate::Comparison::less: return " < ";
    case Predicate::Comparison::lessOrEqual: return " <= ";
    case Predicate::Comparison::greater: return " > ";
    case Predicate::Comparison::greaterOrEqual: return " >= ";
  }
  return " = ";
}

std::string comparisonClause(const Predicate& predicate, const EntityTable& table,
                             std::vector<Predicate::Value>& bindings) {
  const auto name = column(table, predicate.attribute());
  if (std::holds_alternative<std::monostate>(predicate.value())) {
    switch (predicate.comparison()) {
      case Predicate::Comparison::equal: return name + " IS NULL";
      case Predicate::Comparison::notEqual: return name + " IS NOT NULL";
      default: throw InvalidFetchRequest("ordering comparison with nil on " + predicate.attribute());
    }
  }
  bindings.push_back(predicate.value());
  return name + sqlOperator(predicate.comparison()) + "?";
}

std::string clause(const Predicate& predicate, const EntityTable& table, std::vector<Predicate::Value>& bindings) {
  switch (predicate.kind()) {
    case Predicate::Kind::comparison: return comparisonClause(predicate, table, bindings);
    case Predicate::Kind::dateRange: {
      const auto name = column(table, predicate.attribute());
      bindings.push_back(predicate.value());
      bindings.push_back(predicate.upperValue());
      return "(" + name + " >= ? AND " + name + " < ?)";
    }
    case Predicate::Kind::dateRangeOrUndated: {
      // Dates are REAL, or INTEGER when whole seconds. NULL and odd storage
      // (text, blobs) are left for the reader's own decoding to judge. Only
      // numbers are dropped, those below the range or at or above its end:
      // SQLite orders every number before every text ('' the least) and
      // every text before every blob, so `< ''` holds for numbers alone. Plain
      // comparisons keep the scan free of typeof()'s text per row.
      const auto name = column(table, predicate.attribute());
      bindings.push_back(predicate.value());
      bindings.push_back(predicate.upperValue());
      return "(" + name + " IS NULL OR NOT (" + name + " < ? OR (" + name + " >= ? AND " + name + " < '')))";
    }
    case Predicate::Kind::primaryKeyIn: {
      std::string text = "Z_PK IN (";
      for (std::size_t i = 0; i < predicate.primaryKeys().size(); ++i) {
        text += i == 0 ? "?" : ", ?";
        bindings.emplace_back(predicate.primaryKeys()[i]);
      }
      return text + ")";
    }
    case Predicate::Kind::allOf: {
      std::string text = "(1";
      for (const auto& sub : predicate.subpredicates()) text += " AND " + clause(sub, table, bindings);
      return text + ")";
    }
  }
  return "1";
}

std::string selectedColumn(const AttributeDescription& attribute, const EntityTable& table) {
  if (attribute.kind == AttributeKind::binary) return "NULL";
  const auto name = StoreModel::storeName(attribute.name);
  return table.hasColumn(name) ? name : "NULL";
}

std::string allColumns(const EntityDescription& entity, const EntityTable& table) {
  std::string columns;
  for (const auto& attribute : entity.attributes) columns += ", " + selectedColumn(attribute, table);
  return columns;
}

}  // namespace

FetchQuery::FetchQuery(const FetchSpecification& request, const EntityDescription& entity, const EntityTable& table)
    : FetchQuery(request, table, allColumns(entity, table), "") {}

FetchQuery::FetchQuery(const FetchSpecification& request, const EntityDescription& entity, const EntityTable& table,
                       std::size_t judgedAttribute, const std::string& test)
    : FetchQuery(request, table, "",
                 " AND " + test + "(" + selectedColumn(entity.attributes.at(judgedAttribute), table) + ")") {}

FetchQuery::FetchQuery(const FetchSpecification& request, const EntityTable& table, const std::string& columns,
                       const std::string& extraCondition) {
  sql_ = "SELECT Z_PK" + columns + " FROM " + table.tableName + " WHERE " + whereClause(request, table, bindings_) +
         extraCondition;
  sql_ += " ORDER BY ";
  for (const auto& sort : request.sortDescriptors) {
    sql_ += column(table, sort.attribute) + (sort.ascending ? " ASC, " : " DESC, ");
  }
  sql_ += "Z_PK";
  if (request.fetchLimit && *request.fetchLimit > 0) {
    sql_ += " LIMIT " + std::to_string(*request.fetchLimit);
  }
}

std::string FetchQuery::rowSql(const EntityDescription& entity, const EntityTable& table) {
  return "SELECT Z_PK" + allColumns(entity, table) + " FROM " + table.tableName + " WHERE Z_PK = ?1";
}

std::string FetchQuery::whereClause(const FetchSpecification& request, const EntityTable& table,
                                    std::vector<Predicate::Value>& bindings) {
  return request.predicate ? clause(*request.predicate, table, bindings) : "1";
}

void FetchQuery::bind(SqliteStatement& statement) const { bindValues(statement, bindings_); }

void bindValues(SqliteStatement& statement, const std::vector<Predicate::Value>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int index = static_cast<int>(i) + 1;
    std::visit(
        [&](const auto& value) {
          using V = std::decay_t<decltype(value)>;
          if constexpr (std::is_same_v<V, std::monostate>) {
            statement.bindNull(index);
          } else if constexpr (std::is_same_v<V, platform::Date>) {
            statement.bind(index, value.timeIntervalSinceReferenceDate());
          } else if constexpr (std::is_same_v<V, std::string>) {
            statement.bind(index, std::string_view(value));
          } else {
            statement.bind(index, value);
          }
        },
        values[i]);
  }
}

}  // namespace quillan::store
