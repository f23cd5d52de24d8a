#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Date.hpp"
#include "store/FetchRequest.hpp"
#include "store/ManagedObject.hpp"
#include "store/UUID.hpp"

namespace quillan::store {

class Note;

// An audio recording attached to an entry; its bytes are read only when asked for.
class NoteRecording : public ManagedObject {
 public:
  static constexpr const char* kEntityName = "NoteRecording";
  static const EntityDescription& entityDescription();
  static FetchRequest<NoteRecording> fetchRequest();

  NoteRecording(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context);

  const std::optional<platform::Date>& date() const { return date_; }
  const std::optional<UUID>& id() const { return id_; }
  const std::optional<std::string>& name() const { return name_; }
  std::int64_t order() const { return order_; }
  std::optional<std::vector<std::uint8_t>> recordingData() const;
  std::shared_ptr<Note> owner() const;

 protected:
  void refresh(std::vector<StoredValue>& row) override;

 private:
  std::optional<platform::Date> date_;
  std::optional<UUID> id_;
  std::optional<std::string> name_;
  std::int64_t order_ = 0;
  std::optional<std::int64_t> ownerKey_;
};

}  // namespace quillan::store
