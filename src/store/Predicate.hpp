#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/Date.hpp"

namespace quillan::store {

// A small, structured predicate over one entity's attributes. It covers what
// batch delete and narrowed reads need; it is turned into SQL over columns
// checked against the store's schema, with every value bound.
class Predicate {
 public:
  enum class Comparison { equal, notEqual, less, lessOrEqual, greater, greaterOrEqual };
  using Value = std::variant<std::monostate, std::int64_t, double, std::string, platform::Date>;

  // `attribute <op> value`; comparing with an empty value means IS NULL / IS NOT NULL.
  static Predicate compare(std::string attribute, Comparison comparison, Value value);
  // lower <= attribute < upper
  static Predicate dateRange(std::string attribute, platform::Date lower, platform::Date upper);
  // lower <= attribute < upper, or the attribute is NULL or stored as anything
  // but a number (which SQL ranges do not order as dates): every row a date
  // test over the whole entity could keep or stop at.
  static Predicate dateRangeOrUndated(std::string attribute, platform::Date lower, platform::Date upper);
  static Predicate primaryKeyIn(std::vector<std::int64_t> primaryKeys);
  static Predicate allOf(std::vector<Predicate> predicates);

  enum class Kind { comparison, dateRange, dateRangeOrUndated, primaryKeyIn, allOf };
  Kind kind() const { return kind_; }
  const std::string& attribute() const { return attribute_; }
  Comparison comparison() const { return comparison_; }
  const Value& value() const { return value_; }
  const Value& upperValue() const { return upper_; }
  const std::vector<std::int64_t>& primaryKeys() const { return primaryKeys_; }
  const std::vector<Predicate>& subpredicates() const { return subpredicates_; }

 private:
  explicit Predicate(Kind kind) : kind_(kind) {}
  Kind kind_;
  std::string attribute_;
  Comparison comparison_ = Comparison::equal;
  Value value_;
  Value upper_;
  std::vector<std::int64_t> primaryKeys_;
  std::vector<Predicate> subpredicates_;
};

}  // namespace quillan::store
