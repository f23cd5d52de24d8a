#include "store/Predicate.hpp"

namespace quillan::store {

Predicate Predicate::compare(std::string attribute, Comparison comparison, Value value) {
  Predicate predicate(Kind::comparison);
  predicate.attribute_ = std::move(attribute);
  predicate.comparison_ = comparison;
  predicate.value_ = std::move(value);
  return predicate;
}

Predicate Predicate::dateRange(std::string attribute, platform::Date lower, platform::Date upper) {
  Predicate predicate(Kind::dateRange);
  predicate.attribute_ = std::move(attribute);
  predicate.value_ = lower;
  predicate.upper_ = upper;
  return predicate;
}

Predicate Predicate::dateRangeOrUndated(std::string attribute, platform::Date lower, platform::Date upper) {
  auto predicate = dateRange(std::move(attribute), lower, upper);
  predicate.kind_ = Kind::dateRangeOrUndated;
  return predicate;
}

Predicate Predicate::primaryKeyIn(std::vector<std::int64_t> primaryKeys) {
  Predicate predicate(Kind::primaryKeyIn);
  predicate.primaryKeys_ = std::move(primaryKeys);
  return predicate;
}

Predicate Predicate::allOf(std::vector<Predicate> predicates) {
  Predicate predicate(Kind::allOf);
  predicate.subpredicates_ = std::move(predicates);
  return predicate;
}

}  // namespace quillan::store
