#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "store/Predicate.hpp"
#include "store/SortDescriptor.hpp"

namespace quillan::store {

// What to fetch, independent of the result type.
struct FetchSpecification {
  std::string entityName;
  std::optional<Predicate> predicate;
  std::vector<SortDescriptor> sortDescriptors;
  std::optional<std::size_t> fetchLimit;
};

// A fetch request whose results are objects of class `T`. Without sort
// descriptors the results come in the store's order: ascending Z_PK, which is
// the order the rows were inserted in.
template <typename T>
struct FetchRequest : FetchSpecification {
  explicit FetchRequest(std::string entity) { entityName = std::move(entity); }
};

}  // namespace quillan::store
