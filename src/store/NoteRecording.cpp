#include "store/NoteRecording.hpp"

#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"

namespace quillan::store {
namespace {

// Indices into a row, in the order entityDescription() lists the attributes.
struct NoteRecordingColumn {
  enum : std::size_t { kDate, kID, kName, kOrder, kRecordingData, kOwner };
};

}  // namespace

const EntityDescription& NoteRecording::entityDescription() {
  static const EntityDescription description{
      kEntityName,
      {{"date", AttributeKind::date},
       {"id", AttributeKind::uuid},
       {"name", AttributeKind::string},
       {"order", AttributeKind::integer},
       {"recordingData", AttributeKind::binary},
       {"owner", AttributeKind::toOne}},
      [](ObjectID id, std::weak_ptr<ManagedObjectContext> context) -> ManagedObject* {
        return new NoteRecording(std::move(id), std::move(context));
      }};
  return description;
}

FetchRequest<NoteRecording> NoteRecording::fetchRequest() { return FetchRequest<NoteRecording>(kEntityName); }

NoteRecording::NoteRecording(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
    : ManagedObject(std::move(objectID), std::move(context)) {}

void NoteRecording::refresh(std::vector<StoredValue>& row) {
  date_ = decodeDate(row[NoteRecordingColumn::kDate]);
  id_ = decodeUUID(row[NoteRecordingColumn::kID]);
  name_ = takeString(row[NoteRecordingColumn::kName]);
  order_ = decodeInteger(row[NoteRecordingColumn::kOrder]);
  ownerKey_ = decodeForeignKey(row[NoteRecordingColumn::kOwner]);
}

std::optional<std::vector<std::uint8_t>> NoteRecording::recordingData() const {
  auto context = managedObjectContext();
  if (!context) return std::nullopt;
  return context->binaryValue(objectID(), "recordingData");
}

std::shared_ptr<Note> NoteRecording::owner() const {
  auto context = managedObjectContext();
  if (!context || !ownerKey_) return nullptr;
  return context->object<Note>(*ownerKey_);
}

}  // namespace quillan::store
