#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Date.hpp"
#include "store/FetchRequest.hpp"
#include "store/ManagedObject.hpp"
#include "store/UUID.hpp"

namespace quillan::store {

class NoteImage;
class NoteRecording;
class TimelineTab;

// One journal entry. Identified as itself: `uuid` is an attribute, not its identity.
class Note : public ManagedObject {
 public:
  static constexpr const char* kEntityName = "Note";
  static const EntityDescription& entityDescription();
  static FetchRequest<Note> fetchRequest();

  Note(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context);

  const std::optional<platform::Date>& date() const { return date_; }
  const std::optional<std::string>& info() const { return info_; }
  const std::optional<platform::Date>& lastUpdate() const { return lastUpdate_; }
  const std::optional<UUID>& uuid() const { return uuid_; }
  std::vector<std::shared_ptr<NoteImage>> images() const;
  std::vector<std::shared_ptr<NoteRecording>> recordings() const;
  std::shared_ptr<TimelineTab> timelineTab() const;

  ObjectIdentifier id() const { return this; }

 protected:
  void refresh(std::vector<StoredValue>& row) override;

 private:
  std::optional<platform::Date> date_;
  std::optional<std::string> info_;
  std::optional<platform::Date> lastUpdate_;
  std::optional<UUID> uuid_;
  std::optional<std::int64_t> timelineTabKey_;
};

}  // namespace quillan::store
