#pragma once

#include <string>

namespace quillan::store {

struct SortDescriptor {
  std::string attribute;
  bool ascending = true;
};

}  // namespace quillan::store
