#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/ObjectID.hpp"

namespace quillan::store {

class ManagedObject;
class ManagedObjectContext;

enum class AttributeKind { date, string, uuid, integer, boolean, toOne, binary };

struct AttributeDescription {
  std::string name;
  AttributeKind kind;
  // The store cannot be used without this column (a load failure when missing).
  bool requiredInStore = false;
};

// An entity of the model: its name, the attributes it reads (in the order a
// fetched row carries them) and how to make a live object of its class.
struct EntityDescription {
  using Instantiate = ManagedObject* (*)(ObjectID, std::weak_ptr<ManagedObjectContext>);

  std::string name;
  std::vector<AttributeDescription> attributes;
  Instantiate instantiate;
};

}  // namespace quillan::store
