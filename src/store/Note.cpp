#include "store/Note.hpp"

#include "store/ManagedObjectContext.hpp"
#include "store/NoteImage.hpp"
#include "store/NoteRecording.hpp"
#include "store/TimelineTab.hpp"

namespace quillan::store {
namespace {

// Indices into a row, in the order entityDescription() lists the attributes.
struct NoteColumn {
  enum : std::size_t { kDate, kInfo, kLastUpdate, kUUID, kTimelineTab };
};

}  // namespace

const EntityDescription& Note::entityDescription() {
  static const EntityDescription description{
      kEntityName,
      {{"date", AttributeKind::date, true},
       {"info", AttributeKind::string, true},
       {"lastUpdate", AttributeKind::date},
       {"uuid", AttributeKind::uuid},
       {"timelineTab", AttributeKind::toOne}},
      [](ObjectID id, std::weak_ptr<ManagedObjectContext> context) -> ManagedObject* {
        return new Note(std::move(id), std::move(context));
      }};
  return description;
}

FetchRequest<Note> Note::fetchRequest() { return FetchRequest<Note>(kEntityName); }

Note::Note(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
    : ManagedObject(std::move(objectID), std::move(context)) {}

void Note::refresh(std::vector<StoredValue>& row) {
  date_ = decodeDate(row[NoteColumn::kDate]);
  info_ = takeString(row[NoteColumn::kInfo]);
  lastUpdate_ = decodeDate(row[NoteColumn::kLastUpdate]);
  uuid_ = decodeUUID(row[NoteColumn::kUUID]);
  timelineTabKey_ = decodeForeignKey(row[NoteColumn::kTimelineTab]);
}

std::vector<std::shared_ptr<NoteImage>> Note::images() const {
  auto context = managedObjectContext();
  if (!context) return {};
  return context->objectsPointingAt<NoteImage>("owner", objectID().primaryKey);
}

std::vector<std::shared_ptr<NoteRecording>> Note::recordings() const {
  auto context = managedObjectContext();
  if (!context) return {};
  return context->objectsPointingAt<NoteRecording>("owner", objectID().primaryKey);
}

std::shared_ptr<TimelineTab> Note::timelineTab() const {
  auto context = managedObjectContext();
  if (!context || !timelineTabKey_) return nullptr;
  return context->object<TimelineTab>(*timelineTabKey_);
}

}  // namespace quillan::store
