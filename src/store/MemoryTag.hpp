#pragma once

#include <memory>
#include <optional>

#include "platform/Date.hpp"
#include "store/FetchRequest.hpp"
#include "store/ManagedObject.hpp"

namespace quillan::store {

// Marks a day whose memories have been viewed. It has no identifier
// attribute, so it is identified as itself.
class MemoryTag : public ManagedObject {
 public:
  static constexpr const char* kEntityName = "MemoryTag";
  static const EntityDescription& entityDescription();
  static FetchRequest<MemoryTag> fetchRequest();

  MemoryTag(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context);

  const std::optional<platform::Date>& date() const { return date_; }
  bool isViewed() const { return isViewed_; }

  ObjectIdentifier id() const { return this; }

 protected:
  void refresh(std::vector<StoredValue>& row) override;

 private:
  std::optional<platform::Date> date_;
  bool isViewed_ = false;
};

}  // namespace quillan::store
