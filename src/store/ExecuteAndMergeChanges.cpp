#include "store/ManagedObjectContext.hpp"

namespace quillan::store {
namespace {

// Only a batch-delete result whose payload is a list of ids names deleted
// objects; any other shape merges nothing.
std::vector<ObjectID> deletedObjectIDs(const PersistentStoreResult& result) {
  const auto* batchDelete = std::get_if<BatchDeleteResult>(&result);
  if (!batchDelete || !batchDelete->result) return {};
  const auto* ids = std::get_if<std::vector<ObjectID>>(&*batchDelete->result);
  return ids ? *ids : std::vector<ObjectID>{};
}

}  // namespace

std::optional<platform::Error> ManagedObjectContext::executeAndMergeChanges(BatchDeleteRequest request) {
  request.resultType = BatchDeleteRequestResultType::resultTypeObjectIDs;
  auto result = execute(request);
  if (!result) return result.error();
  ChangeDictionary changes{{std::string(kDeletedObjectsKey), deletedObjectIDs(result.value())}};
  mergeChanges(changes, {shared_from_this()});
  return std::nullopt;
}

}  // namespace quillan::store
