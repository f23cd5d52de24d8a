#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Error.hpp"
#include "platform/Fatal.hpp"
#include "store/BatchDeleteRequest.hpp"
#include "store/EntityDescription.hpp"
#include "store/FetchRequest.hpp"
#include "store/KeepRanges.hpp"
#include "store/ManagedObject.hpp"
#include "store/PersistentStoreCoordinator.hpp"
#include "store/PersistentStoreRequestExecutor.hpp"
#include "store/Result.hpp"

namespace quillan::store {

enum class MergePolicy {
  error,
  mergeByPropertyStoreTrump,
  mergeByPropertyObjectTrump,
  overwrite,
  rollback,
};

// The place objects live. It keeps at most one live object per row (identity
// map, held weakly so that dropped results free their memory), refreshes those
// objects from the store on every fetch, and forgets objects a merge reports
// deleted. Each fetch is one read-only snapshot of the store, made into
// objects row by row as SQLite steps, so a fetch never holds its rows twice.
class ManagedObjectContext : public std::enable_shared_from_this<ManagedObjectContext> {
 public:
  explicit ManagedObjectContext(std::shared_ptr<PersistentStoreCoordinator> coordinator);

  template <typename T>
  Result<std::vector<std::shared_ptr<T>>> fetch(const FetchRequest<T>& request);

  // Judges a row by the stored value of one attribute (absent: monostate).
  using ValueFilter = std::function<bool(const StoredValue&)>;
  // Exactly fetch(request) followed by a filter on one attribute's value (the
  // same objects in the same order), but only the rows `keep` accepts become
  // objects. `keep` sees the value of every row the request matches, in order.
  // With `ranges`, numbers they rule out are passed over without asking
  // `keep` (see KeepRanges): the caller vouches it would answer no to them.
  template <typename T>
  Result<std::vector<std::shared_ptr<T>>> fetch(const FetchRequest<T>& request, std::string_view attribute,
                                                const ValueFilter& keep, const KeepRanges* ranges = nullptr);

  // The live object registered for `id`, if any; never reads the store.
  std::shared_ptr<ManagedObject> registeredObject(const ObjectID& id) const;

  // A binary attribute, read from the store only now (fetches never read one).
  // Empty when the row, the column or the value is absent, or when the data
  // lives in an external file that is missing.
  std::optional<std::vector<std::uint8_t>> binaryValue(const ObjectID& id, std::string_view attribute) const;

  // The object a to-one key points at; empty for a dangling key.
  template <typename T>
  std::shared_ptr<T> object(std::int64_t primaryKey);
  // The objects whose to-one `attribute` points at `primaryKey` (a to-many's inverse).
  template <typename T>
  std::vector<std::shared_ptr<T>> objectsPointingAt(const std::string& attribute, std::int64_t primaryKey);

  Result<PersistentStoreResult> execute(const BatchDeleteRequest& request);
  // Executes a batch delete and merges the deleted ids into this context.
  // A failed execute is returned unchanged and nothing is merged.
  std::optional<platform::Error> executeAndMergeChanges(BatchDeleteRequest request);
  void setRequestExecutor(std::shared_ptr<PersistentStoreRequestExecutor> executor);

  static constexpr std::string_view kDeletedObjectsKey = "deleted";
  using ChangeDictionary = std::map<std::string, std::vector<ObjectID>, std::less<>>;
  // mergeChanges(fromRemoteContextSave:into:): registered objects named under
  // kDeletedObjectsKey are marked deleted and forgotten; unknown ids are ignored.
  static void mergeChanges(const ChangeDictionary& changes,
                           const std::vector<std::shared_ptr<ManagedObjectContext>>& contexts);

  PersistentStoreCoordinator& persistentStoreCoordinator() const { return *coordinator_; }

  bool automaticallyMergesChangesFromParent = false;
  MergePolicy mergePolicy = MergePolicy::error;

 private:
  using ObjectSink = std::function<void(std::shared_ptr<ManagedObject>)>;
  struct RowFilter {
    std::string_view attribute;
    const ValueFilter& keep;
    const KeepRanges* ranges;
  };
  // Streams the request's rows into live objects handed to `sink`; the error
  // that stopped the read, if any.
  std::optional<platform::Error> readObjects(const FetchSpecification& request, const EntityDescription& entity,
                                             const RowFilter* filter, const ObjectSink& sink);
  template <typename T>
  Result<std::vector<std::shared_ptr<T>>> fetchObjects(const FetchRequest<T>& request, const RowFilter* filter);
  using Registry = std::unordered_map<std::int64_t, std::weak_ptr<ManagedObject>>;
  std::shared_ptr<ManagedObject> materialize(const EntityDescription& entity, Registry& registry,
                                             std::int64_t primaryKey, std::vector<StoredValue>& values);
  void forgetExpired(const std::string& entityName);
  void forget(const ObjectID& id);
  [[noreturn]] static void typeMismatch(const std::string& fetched, const std::string& expected);

  std::shared_ptr<PersistentStoreCoordinator> coordinator_;
  std::shared_ptr<PersistentStoreRequestExecutor> executor_;
  std::unordered_map<std::string, Registry> registered_;
};

template <typename T>
Result<std::vector<std::shared_ptr<T>>> ManagedObjectContext::fetch(const FetchRequest<T>& request) {
  return fetchObjects(request, nullptr);
}

template <typename T>
Result<std::vector<std::shared_ptr<T>>> ManagedObjectContext::fetch(const FetchRequest<T>& request,
                                                                    std::string_view attribute, const ValueFilter& keep,
                                                                    const KeepRanges* ranges) {
  const RowFilter filter{attribute, keep, ranges};
  return fetchObjects(request, &filter);
}

template <typename T>
Result<std::vector<std::shared_ptr<T>>> ManagedObjectContext::fetchObjects(const FetchRequest<T>& request,
                                                                           const RowFilter* filter) {
  const auto& entity = T::entityDescription();
  if (request.entityName != entity.name) typeMismatch(request.entityName, entity.name);
  std::vector<std::shared_ptr<T>> objects;
  auto failure = readObjects(request, entity, filter, [&objects](std::shared_ptr<ManagedObject> object) {
    objects.push_back(std::static_pointer_cast<T>(std::move(object)));
  });
  if (failure) return std::move(*failure);
  return objects;
}

template <typename T>
std::shared_ptr<T> ManagedObjectContext::object(std::int64_t primaryKey) {
  auto request = T::fetchRequest();
  request.predicate = Predicate::primaryKeyIn({primaryKey});
  auto result = fetch(request);
  if (!result || result.value().empty()) return nullptr;
  return result.value().front();
}

template <typename T>
std::vector<std::shared_ptr<T>> ManagedObjectContext::objectsPointingAt(const std::string& attribute,
                                                                        std::int64_t primaryKey) {
  auto request = T::fetchRequest();
  request.predicate = Predicate::compare(attribute, Predicate::Comparison::equal, primaryKey);
  auto result = fetch(request);
  if (!result) return {};
  return std::move(result.value());
}

}  // namespace quillan::store
