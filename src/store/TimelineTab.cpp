#include "store/TimelineTab.hpp"

#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"

namespace quillan::store {
namespace {

// Indices into a row, in the order entityDescription() lists the attributes.
struct TimelineTabColumn {
  enum : std::size_t { kAddedDate, kID, kName, kOrder };
};

}  // namespace

const EntityDescription& TimelineTab::entityDescription() {
  static const EntityDescription description{
      kEntityName,
      {{"addedDate", AttributeKind::date},
       {"id", AttributeKind::uuid},
       {"name", AttributeKind::string},
       {"order", AttributeKind::integer}},
      [](ObjectID id, std::weak_ptr<ManagedObjectContext> context) -> ManagedObject* {
        return new TimelineTab(std::move(id), std::move(context));
      }};
  return description;
}

FetchRequest<TimelineTab> TimelineTab::fetchRequest() { return FetchRequest<TimelineTab>(kEntityName); }

TimelineTab::TimelineTab(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
    : ManagedObject(std::move(objectID), std::move(context)) {}

void TimelineTab::refresh(std::vector<StoredValue>& row) {
  addedDate_ = decodeDate(row[TimelineTabColumn::kAddedDate]);
  id_ = decodeUUID(row[TimelineTabColumn::kID]);
  name_ = takeString(row[TimelineTabColumn::kName]);
  order_ = decodeInteger(row[TimelineTabColumn::kOrder]);
}

std::vector<std::shared_ptr<Note>> TimelineTab::notes() const {
  auto context = managedObjectContext();
  if (!context) return {};
  return context->objectsPointingAt<Note>("timelineTab", objectID().primaryKey);
}

}  // namespace quillan::store
