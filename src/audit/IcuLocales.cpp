#include "audit/IcuLocales.hpp"

#include <unicode/uloc.h>

namespace quillan::audit {

std::vector<std::string> icuLocaleIdentifiers() {
  std::vector<std::string> identifiers;
  const std::int32_t count = uloc_countAvailable();
  identifiers.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) identifiers.emplace_back(uloc_getAvailable(i));
  return identifiers;
}

}  // namespace quillan::audit
