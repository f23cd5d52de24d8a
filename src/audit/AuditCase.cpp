#include "audit/AuditCase.hpp"

namespace quillan::audit {

std::string AuditCase::name() const {
  return kind + "/" + locale + "/" + dynamicType + "/" + colorScheme + "/" + renderingMode;
}

}  // namespace quillan::audit
