#include "store/MemoryTag.hpp"

namespace quillan::store {
namespace {

enum Column { kDate, kIsViewed };

}  // namespace

const EntityDescription& MemoryTag::entityDescription() {
  static const EntityDescription description{
      kEntityName,
      {{"date", AttributeKind::date}, {"isViewed", AttributeKind::boolean}},
      [](ObjectID id, std::weak_ptr<ManagedObjectContext> context) -> ManagedObject* {
        return new MemoryTag(std::move(id), std::move(context));
      }};
  return description;
}

FetchRequest<MemoryTag> MemoryTag::fetchRequest() { return FetchRequest<MemoryTag>(kEntityName); }

MemoryTag::MemoryTag(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
    : ManagedObject(std::move(objectID), std::move(context)) {}

void MemoryTag::refresh(std::vector<StoredValue>& row) {
  date_ = decodeDate(row[kDate]);
  isViewed_ = decodeBool(row[kIsViewed]);
}

}  // namespace quillan::store
