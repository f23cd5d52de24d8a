#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/FetchRequest.hpp"
#include "store/ObjectID.hpp"

namespace quillan::store {

enum class BatchDeleteRequestResultType { resultTypeStatusOnly, resultTypeObjectIDs, resultTypeCount };

// Deletes rows of one entity straight in the store: those a fetch request's
// predicate matches, or those named by object ids.
struct BatchDeleteRequest {
  explicit BatchDeleteRequest(const FetchSpecification& fetchRequest)
      : entityName(fetchRequest.entityName), predicate(fetchRequest.predicate) {}
  explicit BatchDeleteRequest(std::vector<ObjectID> ids)
      : entityName(ids.empty() ? std::string() : ids.front().entityName), objectIDs(std::move(ids)) {}

  std::string entityName;
  std::optional<Predicate> predicate;
  std::optional<std::vector<ObjectID>> objectIDs;
  BatchDeleteRequestResultType resultType = BatchDeleteRequestResultType::resultTypeStatusOnly;
};

}  // namespace quillan::store
