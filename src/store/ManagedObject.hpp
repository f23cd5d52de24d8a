#pragma once

#include <memory>
#include <vector>

#include "store/EntityDescription.hpp"
#include "store/ObjectID.hpp"
#include "store/StoredValue.hpp"

namespace quillan::store {

class ManagedObjectContext;

// The identity of an object identified as itself (a live-object identity).
using ObjectIdentifier = const void*;

// A live object of one store row, owned through std::shared_ptr and kept
// unique per row by its context. Its values are those of the context's last
// fetch of the row; nothing in the extension writes them.
class ManagedObject {
 public:
  virtual ~ManagedObject() = default;
  ManagedObject(const ManagedObject&) = delete;
  ManagedObject& operator=(const ManagedObject&) = delete;

  const ObjectID& objectID() const { return objectID_; }
  // True once a merge reported the row deleted; the context no longer hands it out.
  bool isDeleted() const { return deleted_; }
  std::shared_ptr<ManagedObjectContext> managedObjectContext() const { return context_.lock(); }

 protected:
  ManagedObject(ObjectID objectID, std::weak_ptr<ManagedObjectContext> context)
      : objectID_(std::move(objectID)), context_(std::move(context)) {}

  // Takes the row's values, aligned with the entity's attribute list; it may
  // move them out (the row is a buffer the fetch refills for the next row).
  virtual void refresh(std::vector<StoredValue>& row) = 0;

 private:
  friend class ManagedObjectContext;
  ObjectID objectID_;
  std::weak_ptr<ManagedObjectContext> context_;
  bool deleted_ = false;
};

}  // namespace quillan::store
