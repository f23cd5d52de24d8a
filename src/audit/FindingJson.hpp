#pragma once

#include <string>

#include "audit/Finding.hpp"

namespace quillan::audit {

// A finding as audit.json holds it (docs/audit.md): one line of JSON, no newline.
std::string findingJson(const Finding& finding);

}  // namespace quillan::audit
