#pragma once

#include <string>
#include <vector>

namespace quillan::audit {

// Every locale ICU has data for, as identifiers ("ar_EG", "sr_Latn_RS"), in ICU's order.
std::vector<std::string> icuLocaleIdentifiers();

}  // namespace quillan::audit
