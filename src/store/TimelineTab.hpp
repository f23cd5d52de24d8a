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

// A named tab that groups entries. The store keeps the link on the Note side
// only (ZNOTE.ZTIMELINETAB); `notes` is that key's inverse.
class TimelineTab : public ManagedObject {
 public:
  static constexpr const char* kEntityName = "TimelineTab";
  static const EntityDescription& entityDescription();
  static FetchRequest<TimelineTab> fetchRequest();

  TimelineTab(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context);

  const std::optional<platform::Date>& addedDate() const { return addedDate_; }
  const std::optional<UUID>& id() const { return id_; }
  const std::optional<std::string>& name() const { return name_; }
  std::int64_t order() const { return order_; }
  std::vector<std::shared_ptr<Note>> notes() const;

 protected:
  void refresh(std::vector<StoredValue>& row) override;

 private:
  std::optional<platform::Date> addedDate_;
  std::optional<UUID> id_;
  std::optional<std::string> name_;
  std::int64_t order_ = 0;
};

}  // namespace quillan::store
