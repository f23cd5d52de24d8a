#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "store/FetchRequest.hpp"
#include "store/ManagedObject.hpp"
#include "store/UUID.hpp"

namespace quillan::store {

class Note;

// An image attached to an entry. Its bytes are read from the store only when
// asked for, so fetching images costs nothing per picture.
class NoteImage : public ManagedObject {
 public:
  static constexpr const char* kEntityName = "NoteImage";
  static const EntityDescription& entityDescription();
  static FetchRequest<NoteImage> fetchRequest();

  NoteImage(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context);

  const std::optional<UUID>& id() const { return id_; }
  std::optional<std::vector<std::uint8_t>> imgData() const;
  std::int64_t order() const { return order_; }
  std::shared_ptr<Note> owner() const;

 protected:
  void refresh(std::vector<StoredValue>& row) override;

 private:
  std::optional<UUID> id_;
  std::int64_t order_ = 0;
  std::optional<std::int64_t> ownerKey_;
};

}  // namespace quillan::store
