#include "store/NoteImage.hpp"

#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"

namespace quillan::store {
namespace {

// Indices into a row, in the order entityDescription() lists the attributes.
struct NoteImageColumn {
  enum : std::size_t { kID, kImgData, kOrder, kOwner };
};

}  // namespace

const EntityDescription& NoteImage::entityDescription() {
  static const EntityDescription description{
      kEntityName,
      {{"id", AttributeKind::uuid},
       {"imgData", AttributeKind::binary},
       {"order", AttributeKind::integer},
       {"owner", AttributeKind::toOne}},
      [](ObjectID id, std::weak_ptr<ManagedObjectContext> context) -> ManagedObject* {
        return new NoteImage(std::move(id), std::move(context));
      }};
  return description;
}

FetchRequest<NoteImage> NoteImage::fetchRequest() { return FetchRequest<NoteImage>(kEntityName); }

NoteImage::NoteImage(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
    : ManagedObject(std::move(objectID), std::move(context)) {}

void NoteImage::refresh(std::vector<StoredValue>& row) {
  id_ = decodeUUID(row[NoteImageColumn::kID]);
  order_ = decodeInteger(row[NoteImageColumn::kOrder]);
  ownerKey_ = decodeForeignKey(row[NoteImageColumn::kOwner]);
}

std::optional<std::vector<std::uint8_t>> NoteImage::imgData() const {
  auto context = managedObjectContext();
  if (!context) return std::nullopt;
  return context->binaryValue(objectID(), "imgData");
}

std::shared_ptr<Note> NoteImage::owner() const {
  auto context = managedObjectContext();
  if (!context || !ownerKey_) return nullptr;
  return context->object<Note>(*ownerKey_);
}

}  // namespace quillan::store
